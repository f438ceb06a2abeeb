@echo off
rem Installa e aggiorna Tellaxis su una cassa Windows, copia i file delle periferiche, controlla, e scrive l'esito.
rem
rem   tellaxis-casse.cmd \\SERVER\tellaxis [CASSA]
rem
rem Come script di avvio del computer in un criterio di gruppo (GPO): Configurazione computer, Impostazioni di Windows,
rem Script, Avvio; il parametro e' la cartella condivisa. CASSA e' il nome del computer, se non si dice altro.
rem Nella cartella condivisa, leggibile dai computer del dominio:
rem
rem   tellaxis-installa.exe   l'installazione
rem   versione.txt            la sua versione: si installa dove e' un'altra
rem   comune.toml             periferiche e opzioni di tutte le casse
rem   casse\CASSA.toml        cio' che una cassa ha di suo; comincia con include = "comune.toml"
rem   casse\TUTTE.toml        per le casse che non hanno un file loro
rem   esiti\                  qui i computer scrivono: CASSA.json, cio' che dice "tellaxisd controlla --json"; CASSA.txt, la
rem                           versione e il codice di uscita; CASSA-errori.txt, perche' i file non si possono usare
rem
rem Esce con 0; con 1 se il controllo trova un errore, con 2 se i file delle periferiche non si possono usare, con 3 se
rem l'installazione non riesce, con 4 se la cartella condivisa non risponde.
setlocal
set "RETE=%~1"
set "CASSA=%~2"
if "%CASSA%"=="" set "CASSA=%COMPUTERNAME%"
set "CARTELLA=C:\Tellaxis"
if not exist "%RETE%\comune.toml" exit /b 4

set "NUOVA="
set "VECCHIA="
if exist "%RETE%\versione.txt" set /p NUOVA=<"%RETE%\versione.txt"
if exist "%CARTELLA%\versione.txt" set /p VECCHIA=<"%CARTELLA%\versione.txt"
if "%NUOVA%"=="%VECCHIA%" goto :file
if not exist "%CARTELLA%\metriche" mkdir "%CARTELLA%\metriche"
start /wait "" "%RETE%\tellaxis-installa.exe" /S /D=%CARTELLA%
if errorlevel 1 goto :nonInstallato
if not exist "%CARTELLA%\tellaxisd.exe" goto :nonInstallato
copy /y "%RETE%\versione.txt" "%CARTELLA%\versione.txt" >nul

:file
if not exist "%CARTELLA%\metriche" mkdir "%CARTELLA%\metriche"
copy /y "%RETE%\comune.toml" "%CARTELLA%\comune.toml" >nul
set "SUO=%RETE%\casse\%CASSA%.toml"
if not exist "%SUO%" set "SUO=%RETE%\casse\TUTTE.toml"
if exist "%SUO%" copy /y "%SUO%" "%CARTELLA%\devices.toml" >nul

"%CARTELLA%\tellaxisd.exe" controlla --json >"%CARTELLA%\esito.json" 2>"%CARTELLA%\errori.txt"
set "ESITO=%ERRORLEVEL%"
copy /y "%CARTELLA%\esito.json" "%RETE%\esiti\%CASSA%.json" >nul
echo %NUOVA% controlla: %ESITO% >"%RETE%\esiti\%CASSA%.txt"
copy /y "%CARTELLA%\errori.txt" "%RETE%\esiti\%CASSA%-errori.txt" >nul
exit /b %ESITO%

:nonInstallato
echo %NUOVA% non installato >"%RETE%\esiti\%CASSA%.txt"
exit /b 3
