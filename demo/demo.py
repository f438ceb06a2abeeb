"""Demo: sample cash desks whose every device receives a job from the real bridge; says what arrived and how fast."""

import concurrent.futures
import os
import shutil
import subprocess
import sys
import threading
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "tests" / "desk"))

import sample_transfers
import sample_jobs
import fiscal_driver
from harness import TOOLS, Desk, wait_for
from receipt_printer import ReceiptPrinter
from serial_line import SerialLine

POLLING = 0.5  # seconds, as on a cash desk
AT_A_TIME = 4  # scenes: they wait for the next look of their bridge most of the time
PAGES = Path(os.environ.get("TELLAXIS_DEMO_PAGES", "demo-pages"))


class Report:
    """One line a job; remembers whether anything was missing. What it says is kept, to be shown scene by scene."""

    def __init__(self):
        self.missing = []
        self.lines = []

    def job(self, device, begin, arrived, show):
        """Lets `begin` cause a job and waits until `arrived`; `show` tells what reached the device."""
        begun = time.monotonic()
        begin()
        try:
            wait_for(arrived, device, 30)
        except AssertionError as failure:
            self.lacks(device, failure)
            return
        took = (time.monotonic() - begun) * 1000
        self.lines.append(f"  {took:5.0f} ms  {device}")
        self.lines.extend(f"            {line}" for line in show())

    def lacks(self, what, why):
        self.missing.append(what)
        self.lines.append(f"  MISSING   {what}: {why}")


def lines_of(text):
    return [line.rstrip() for line in text.splitlines() if line.strip()]


def run(desk, report, jobs):
    """Starts the bridge, lets the jobs pass and stops it."""
    program = desk.start(polling=POLLING)
    jobs()
    status = program.stop()
    if status != 0:
        report.lacks("a clean end", f"status {status}")


def add_printer(desk, name, port):
    """A folder printer; returns the folder of its documents."""
    folder = name.replace(" ", "-")
    with open(desk.main / "devices.toml", "a", encoding="utf-8") as devices:
        devices.write(f'[[printer]]\nname = "{name}"\nport = "{port}"\ntarget = "folder:{folder}"\n')
    return desk.main / folder


def documents(folder):
    return sorted(folder.glob("[0-9]*.jsonl")) if folder.exists() else []


def keep_pages(folder):
    """Copies the drawn pages to where they can be looked at after the demo; tells the text of the last one and the places."""
    PAGES.mkdir(parents=True, exist_ok=True)
    places = []
    for page in sorted(folder.glob("[0-9]*.png")):
        place = PAGES / f"{folder.name}-{page.name}"
        shutil.copy(page, place)
        places.append(f"page: {place}")
    if not places:
        raise AssertionError(f"no page was drawn in {folder}")
    text = documents(folder)[-1].with_suffix(".txt").read_text(encoding="utf-8")
    return [line for line in lines_of(text) if len(line.strip()) > 1][:6] + places


def print_job(desk, report, device, folder, begin, count=1):
    report.job(device, begin, lambda: len(documents(folder)) >= count, lambda: keep_pages(folder))


class PoleDisplay:
    """The pole display simulator on COM 5; prints the picture of one message and ends."""

    def __init__(self, desk):
        self.link = desk.root / "com5"
        with open(desk.main / "devices.toml", "a", encoding="utf-8") as devices:
            devices.write(f'[[serial]]\nport = 5\ndevice = "{self.link}"\n')
        self.process = subprocess.Popen(
            [str(TOOLS / "pole_display"), "--link", str(self.link), "--once"], stdout=subprocess.PIPE, text=True
        )
        desk.programs.append(self)
        self.picture = None
        threading.Thread(target=self._read, daemon=True).start()
        wait_for(self.link.exists, "the display's port")

    def _read(self):
        self.picture = self.process.stdout.read()

    def kill(self):
        self.process.kill()
        self.process.wait()


def point_of_sale_settings(desk, **values):
    text = "[Varie]\r\n" + "".join(f"{key}={value}\r\n" for key, value in values.items())
    desk.c("MERIDIA\\_Local.ini").write_bytes(text.encode("cp1252"))


def configure_everything(desk):
    """All devices, by the point-of-sale application's own settings; returns the folders of the two printers."""
    desk.c("MF").mkdir()
    receipts = add_printer(desk, "SAMSUNG SRP-500", "COM3:")
    slips = add_printer(desk, "EPSON TM-L90 Receipt", "LPT1:")
    point_of_sale_settings(
        desk,
        MisPre="93",
        CommPre="2",
        CF_SETTAGGIO="9600,N,8,1",
        Delay="10",
        MF_FILE_DRIVER=fiscal_driver.command_line(desk, work=100),
        Banco_DisplayNoNd="2",
        Dis_PortaCom="5",
        Dis_Parametri="9600,N,8,1",
        BANCO_DS_STAMPANTE="66",
        BANCO_DS_STAMPANTE_C="3",
    )
    desk.c("MERIDIA\\LogoCassa.bmp").write_bytes(sample_jobs.logo())
    # What the point-of-sale side does not know, the operator has entered.
    desk.settings(
        Orbis_Directory="C:\\MERIDIA",
        MF_File="C:\\MF\\in.txt",
        MF_File_Output="C:\\MF\\out.txt",
        Display_File="C:\\MERIDIA\\Display.txt",
        CORT_Active=-1,
        CORT_Logo=-1,
        RF_Active=-1,
        RF_Stampante="EPSON TM-L90 Receipt",
        RF_Seriale="LPT1:",
        RF_File="C:\\MERIDIA\\Ricevuta.txt",
    )
    return receipts, slips


def whole_installation(desk, report):
    """All devices at once."""
    display = PoleDisplay(desk)
    receipts, slips = configure_everything(desk)

    def jobs():
        report.job(
            "customer display, ASEM",
            lambda: desk.write_whole(desk.c("MERIDIA\\Display.txt"), sample_jobs.DISPLAY),
            lambda: display.picture,
            lambda: lines_of(display.picture),
        )
        fiscal_job(desk, report, "fiscal printer, NUCLEO DRIVER - 93")
        print_job(desk, report, "courtesy printer, SAMSUNG class 500", receipts, lambda: desk.drop(
            "preconto.txt", sample_jobs.COURTESY_500, "CortOrbis"), count=2)
        print_job(desk, report, "slip printer, TM-L90 layout", slips, lambda: desk.write_whole(
            desk.c("MERIDIA\\Ricevuta.txt"), sample_jobs.SLIP))

    run(desk, report, jobs)


def fiscal_job(desk, report, device):
    report.job(
        device,
        lambda: desk.drop("scontrino.txt", sample_jobs.FISCAL),
        lambda: fiscal_driver.receipts(desk) and not desk.jobs("IN"),
        lambda: lines_of(fiscal_driver.receipts(desk)[0]),
    )


def program_driver(protocol):
    def scene(desk, report):
        fiscal_driver.configure(desk, protocol, MF_Driver=fiscal_driver.command_line(desk, work=100))
        run(desk, report, lambda: fiscal_job(desk, report, "fiscal printer, " + protocol))

    return scene


def input_file_driver(desk, report):
    fiscal_driver.configure(desk, "CASIO/DITRON - 24")
    fiscal_driver.watching(desk, desk.c("MF\\in.txt"))
    run(desk, report, lambda: fiscal_job(desk, report, "fiscal printer, CASIO/DITRON - 24"))


def fpmate_driver(desk, report):
    fiscal_driver.configure(desk, "FPMate - 29", MF_Buffer=1)
    for folder in ("Epson", "_Buffer"):
        desk.c("MERIDIA\\" + folder).mkdir()
    for slot in ("#0003", "#0007"):
        desk.c("MERIDIA\\_Buffer\\" + slot).write_text(f"<scontrino posto='{slot}'/>")
    fiscal_driver.watching(desk, desk.c("MERIDIA\\Epson\\Scontr.xml"), work=0)

    def both():
        for number in (1, 2):
            report.job(
                f"fiscal printer, FPMate - 29, buffered receipt {number}",
                lambda: desk.drop("segnale.txt", ""),
                lambda: len(fiscal_driver.receipts(desk)) == number and not desk.jobs("IN"),
                lambda: [fiscal_driver.receipts(desk)[-1]],
            )

    run(desk, report, both)


def courtesy(printer_type, device_name, job):
    """A courtesy printer of this type on COM3."""

    def scene(desk, report):
        folder = add_printer(desk, device_name, "COM3:")
        desk.settings(Orbis_Setting=0, CORT_Active=-1, CORT_Printer=printer_type, CORT_COM=3)
        run(desk, report, lambda: print_job(
            desk, report, f"courtesy printer, {printer_type} on {device_name}", folder,
            lambda: desk.drop("preconto.txt", job, "CortOrbis")))

    return scene


def serial_courtesy(desk, report):
    line = SerialLine(desk, 4).plug_in()
    desk.programs.append(type("Line", (), {"kill": lambda self: line.pull_out()})())
    desk.settings(Orbis_Setting=0, CORT_Active=-1, CORT_Printer="DPT-282", CORT_COM=4)
    run(desk, report, lambda: report.job(
        "courtesy printer, DPT-282 on COM4",
        lambda: desk.drop("preconto.txt", sample_jobs.SERIAL, "CortOrbis"),
        lambda: bytes(line.received).endswith(b"\x1bm"),
        lambda: [repr(bytes(line.received))],
    ))


def slip(printer):
    def scene(desk, report):
        folder = add_printer(desk, printer, "LPT1:")
        desk.settings(
            Orbis_Setting=0, RF_Active=-1, RF_Stampante=printer, RF_Seriale="LPT1:", RF_File="C:\\MERIDIA\\Ricevuta.txt"
        )
        run(desk, report, lambda: print_job(desk, report, f"slip printer, {printer}", folder, lambda: desk.write_whole(
            desk.c("MERIDIA\\Ricevuta.txt"), sample_jobs.SLIP)))

    return scene


def check(desk):
    """Status and lines of `controlla`."""
    program = desk.launch(*desk.arguments(POLLING), "controlla")
    return program.wait(), program.output


def checked_installation(desk, report):
    """The whole installation under `controlla`: as it should be, with its fiscal driver gone, with a printer out of paper."""
    line = SerialLine(desk, 5).plug_in()
    printer = ReceiptPrinter(desk.root / "received.bin")
    configure_everything(desk)
    with open(desk.main / "devices.toml", "a", encoding="utf-8") as devices:
        devices.write("[bridge]\nmidnight = true\n")
        devices.write(f'[[printer]]\nname = "SAMSUNG SRP-350"\nport = "COM9:"\ntarget = "escpos:tcp://127.0.0.1:{printer.port}"\n')
    program = desk.start(polling=POLLING)
    driver = desk.read_settings()["MF_Driver"]

    def without_driver():
        desk.settings(MF_Driver="C:\\NucleoDriver\\NucleoDriver.exe")

    def without_paper():
        desk.settings(MF_Driver=driver, CORT_COM=9)
        printer.tell("senza carta")

    for what, change, expected, problem in (
        ("in order", lambda: None, 0, "0 errori, 0 avvisi"),
        ("without its driver", without_driver, 1, "[driver-missing]"),
        ("without paper", without_paper, 1, "manca la carta"),
    ):
        change()
        status, lines = check(desk)
        report.lines.append(f"  controlla on an installation {what}: status {status}")
        report.lines.extend(f"            {line}" for line in lines)
        if status != expected or problem not in "\n".join(lines):
            report.lacks(f"controlla on an installation {what}", f"status {status}")
    if program.stop() != 0:
        report.lacks("a clean end", "after controlla")
    printer.close()
    line.pull_out()


SCENES = (
    whole_installation,
    program_driver("ONDA DRIVER - 91"),
    program_driver("GLOBE DRIVER - 106"),
    input_file_driver,
    fpmate_driver,
    courtesy("SAMSUNG", "SAMSUNG SRP-350", sample_jobs.COURTESY_OTHERS),
    courtesy("SAMSUNG", "SAMSUNG SRP-103", sample_jobs.COURTESY_OTHERS),
    courtesy("OLIVETTI PRT100 NonFiscale", "Olivetti PRT100", sample_jobs.LINE_PRINTER),
    courtesy("UNIPOS MERIDIA", "Unipos", sample_jobs.UNIPOS),
    serial_courtesy,
    slip("Custom KUBE Ric. Fisc. [A]"),
    slip("EPSON TM-U295 Slip"),
    sample_transfers.transfers,
    sample_transfers.scheduled_operation,
    checked_installation,
)


def show_window():
    """The main window on a cash desk with all devices, until it is closed; returns its exit status."""
    desk = Desk()
    try:
        display = PoleDisplay(desk)
        configure_everything(desk)
        print(f"The cash desk is {desk.main}; what its printers print lies in its sub-folders.")
        print(f"A message for the display: a text file {desk.c('MERIDIA')}/Display.txt. Close the window to end.")
        status = subprocess.run([os.environ["TELLAXIS"], *desk.arguments(POLLING)], check=False).returncode
        if display.picture:
            print(display.picture)
        return status
    finally:
        desk.close()


def played(scene):
    """Plays a scene on a desk of its own; its report."""
    report = Report()
    desk = Desk()
    try:
        scene(desk, report)
    except Exception as failure:  # pylint: disable=broad-except
        report.lacks(getattr(scene, "__name__", "a scene"), failure)
    finally:
        desk.close()
    return report


def main():
    if sys.argv[1:] == ["--window"]:
        return show_window()
    missing = []
    print("Each job: time from the job file's appearance to the device, at a polling interval of 500 ms, and what arrived.")
    with concurrent.futures.ThreadPoolExecutor(AT_A_TIME) as pool:
        for report in pool.map(played, SCENES):
            print("\n".join(report.lines), flush=True)
            missing += report.missing
    if missing:
        print("Not everything arrived: " + ", ".join(missing))
        return 1
    print("Everything arrived, and the bridge stopped cleanly each time.")
    return 0


if __name__ == "__main__":
    sys.exit(main())
