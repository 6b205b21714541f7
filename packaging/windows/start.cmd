@echo off
rem Starts the console.  On the first start, copies a settings file that makes it show all pages and receive syslog.
if not exist "%~dp0thlisten.ini" copy "%~dp0starter-settings.ini" "%~dp0thlisten.ini" >nul
start "" "%~dp0tallyhorn-console.exe"
