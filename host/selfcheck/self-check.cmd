@echo off
rem Checks kvBandscope on this computer and opens the report. The argument "quiet" leaves the report closed.
setlocal
set "folder=%~dp0"
set "report=%folder%kvBandscope-report.txt"
if not exist "%folder%BandscopeHost.exe" (
    echo BandscopeHost.exe is missing beside this file. Extract the whole package into a folder first.
    if not "%~1"=="quiet" pause
    exit /b 1
)
echo Checking kvBandscope. This takes about a minute. Please leave the mouse and the keyboard alone meanwhile.
call :check
rem 5: the report cannot be written here. Then it goes to the user's temporary folder.
if "%result%"=="5" (
    set "report=%TEMP%\kvBandscope-report.txt"
    call :check
)
if "%result%"=="0" echo Nothing differs and nothing failed.
if "%result%"=="6" echo Something differs or failed. The report says what.
echo Please send this file, and the pictures beside it whose names begin with kvBandscope-report:
echo     "%report%"
if not "%~1"=="quiet" start "" notepad "%report%"
if not "%~1"=="quiet" pause
exit /b %result%

:check
start "" /wait "%folder%BandscopeHost.exe" --self-check "%report%"
set "result=%errorlevel%"
exit /b
