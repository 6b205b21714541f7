@echo off
rem Starts the console.  Where there are no settings yet, those are laid that show all pages and listen for syslog.
cd /d "%~dp0"
if not exist thlisten.ini copy starter-settings.ini thlisten.ini >nul
start "" "%~dp0tallyhorn-console.exe"
