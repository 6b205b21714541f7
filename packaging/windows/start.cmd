@echo off
rem Starts the console.  Where there are no settings yet, those are laid that show all pages and listen for syslog.
if not exist "%~dp0thlisten.ini" copy "%~dp0starter-settings.ini" "%~dp0thlisten.ini" >nul
start "" "%~dp0tallyhorn-console.exe"
