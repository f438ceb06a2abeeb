"""Screenshots: a picture of each window, with a sample cash desk behind it."""

import subprocess
import sys
import time
from pathlib import Path

from screen import Desk, Window, run, wait_for, walk
import fiscal_driver  # in the folder that screen puts on the path

PRINTERS = """
[[printer]]
name = "EPSON TM-U295 Slip"
port = "COM2:"
target = "folder:spool/ricevute"

[[printer]]
name = "SAMSUNG"
port = "COM4:"
target = "folder:spool/preconti"
"""

SETTINGS = dict(
    Orbis_Directory="C:\\MERIDIA",
    Display_Active=-1,
    Display_Type="WINCOR-NIXDORF",
    Display_File="C:\\MERIDIA\\Display.txt",
    Display_COM="3",
    Display_Parametri="9600,N,8,1",
    Display_Delay="5",
    RF_Active=0,
    RF_Stampante="EPSON TM-U295 Slip",
    RF_Seriale="COM2:",
    RF_File="C:\\MERIDIA\\Ricevuta.txt",
    RF_Righe="41",
    CORT_Active=-1,
    CORT_Printer="SAMSUNG",
    CORT_COM="4",
    CORT_File="c:\\Meridia\\LogoCassa.bmp",
    FTP_Indirizzo="ftp.example.it",
    FTP_User="negozio12",
    WEB_Connection="ADSL",
    WEB_User="cassa",
)


DIARY = """
[bridge]
diary = "diario"
archive = true
"""

# Text, command, pitch, style; 13 is a bar code.
COURTESY_JOB = (
    "PRECONTO#0#14#1",
    "Tavolo 7      coperti 2#0#14#0",
    "2 Coperto            4,00#0#14#0",
    "1 Spaghetti          9,50#0#14#0",
    "1 Frittura mista    16,00#0#14#0",
    "TOTALE         € 29,50#0#14#1",
    "8001234567897#0#14#13",
    "#1",
)


def identity_of(window, title):
    """The number of the window with this title that the window manager frames."""
    words = ["xdotool", "search", "--onlyvisible", "--all", "--pid", str(window.process.pid), "--name", f"^{title}$"]
    return [each for each in run(*words).split() if "window state" in run("xprop", "-id", each, "WM_STATE")][-1]


def close(window, title):
    """Closes a window as its own button would."""
    run("xdotool", "windowactivate", "--sync", identity_of(window, title), "key", "alt+F4")
    wait_for(lambda: title not in window.frames(), f"{title} closed")


def picture(identity, path):
    colours = ["-depth", "8", "+dither", "-colors", "128"]
    subprocess.run(["import", "-frame", "-window", identity, *colours, str(path)], check=True)
    print(path)


class Pictures:
    def __init__(self, folder, window):
        self.folder = folder
        self.window = window

    def take(self, name, title, marks=()):
        """The picture of one window with its frame; `marks` are texts that it must show first."""
        wait_for(lambda: title in self.window.frames(), title)
        for mark in marks:
            wait_for(lambda: any(mark in label for label in self.window.labels(self.window.frame(title))), mark)
        run("xdotool", "mousemove", "1", "1")
        time.sleep(0.6)
        identity = identity_of(self.window, title)
        run("xdotool", "windowraise", identity)
        time.sleep(0.3)
        picture(identity, self.folder / f"{name}.png")


def main():
    desk = Desk()
    try:
        (desk.main / "devices.toml").write_text(PRINTERS + DIARY)
        fiscal_driver.configure(desk, "ONDA DRIVER - 91", **SETTINGS)
        driver = desk.c("OndaDriver")  # a short name for the picture
        driver.mkdir()
        script = driver / "OndaDriver.bat"
        script.write_text(fiscal_driver.command_line(desk) + "\r\n")
        desk.settings(MF_Driver="C:\\OndaDriver\\OndaDriver.bat")
        window = Window(desk)
        wait_for(window.is_visible, "the window")
        pictures = Pictures(Path(sys.argv[1]), window)
        subprocess.run(["convert", "-size", "200x60", "xc:white", "BMP3:" + str(desk.c("MERIDIA\\LogoCassa.bmp"))], check=True)
        desk.drop("scontr01.txt")
        courtesy = "".join(line + "\r\n" for line in COURTESY_JOB).encode("cp1252")
        desk.write_whole(desk.main / "CortOrbis" / "preconto.txt", courtesy)
        pictures.take("main-window", "Tellaxis", marks=["scontr01.txt", "preconto.txt"])
        window.menu("Strumenti", "Epson TM-U295")
        tool = window.frame("TEST Epson TM-U295")
        window.enter("Righe", "41", tool)
        window.enter("Colonne", "60", tool)
        pictures.take("slip-test", "TEST Epson TM-U295")
        window.press("Stampa TEST", tool)
        pictures.take("slip-test-result", "Risultato TEST")
        window.press("OK", window.frame("Risultato TEST"))
        close(window, "TEST Epson TM-U295")
        window.menu("Strumenti", "Stampanti - Porte")
        pictures.take("printers", "Elenco Porte Stampanti")
        window.press("Chiudi", window.frame("Elenco Porte Stampanti"))
        window.menu("Strumenti", "Diagnosi")
        pictures.take("diagnosis", "Diagnosi", marks=["avvis"])
        window.press("Chiudi", window.frame("Diagnosi"))
        wait_for(lambda: "Diagnosi" not in window.frames(), "Diagnosi closed")
        desk.write_whole(desk.c("MERIDIA\\Display.txt"), "Totale\r\n")  # on a line that is not there
        desk.write_whole(desk.main / "CortOrbis" / "preconto2.txt", courtesy)
        wait_for(lambda: not desk.jobs("CortOrbis") and not desk.jobs("CortIN"), "the second job printed")
        window.menu("Strumenti", "Diario")
        wait_for(lambda: "Diario" in window.frames(), "Diario")
        wait_for(lambda: any(item.name == "Pagina" for item in walk(window.frame("Diario"))), "the page")
        pictures.take("diary", "Diario", marks=["lavor"])
        window.press("Chiudi", window.frame("Diario"))
        wait_for(lambda: "Diario" not in window.frames(), "Diario closed")
        window.menu("About", "About Tellaxis")
        pictures.take("about", "About")
        window.press("Chiudi", window.frame("About"))
        window.menu("File", "Esci")
        time.sleep(0.5)
        run("xdotool", "mousemove", "1", "1")
        time.sleep(0.6)
        picture(run("xdotool", "getactivewindow"), Path(sys.argv[1]) / "exit-question.png")
        window.stop()
    finally:
        desk.close()


if __name__ == "__main__":
    main()
