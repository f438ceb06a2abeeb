"""Demo scenes: a file by FTP each way and a scheduled operation, called for as a timer would."""

from ftp_servers import PASSWORD, USER, PlainServer


def once(desk, *arguments):
    """Runs a command that is one operation; its status."""
    return desk.launch(*desk.arguments(), *arguments).wait()


def transfers(desk, report):
    server_folder = desk.root / "server"
    local_folder = desk.c("dati")
    for folder in (server_folder, local_folder):
        folder.mkdir()
    (server_folder / "listino.txt").write_text("caffe 1,10")
    (server_folder / "C:\\dati\\incasso.txt").write_text("ieri 812,40")
    (local_folder / "incasso.txt").write_text("oggi 954,10")
    server = PlainServer(server_folder)
    desk.settings(FTP_Indirizzo=server.address, FTP_User=USER, FTP_Pw=PASSWORD, FTP_Directory="C:\\dati\\")

    def transfer(what, action, name, target):
        def begin():
            desk.settings(FTP_Azione=action, FTP_NomeFile=name)
            once(desk, "ftp")

        report.job(
            what,
            begin,
            lambda: desk.read_settings()["FTP_Esito"] == "-1" and target.exists(),
            lambda: [f"{target.name}: {target.read_text()}"],
        )

    try:
        transfer("FTP, a file from the server", 2, "listino.txt", local_folder / "listino.txt")
        transfer("FTP, a file to the server", 1, "incasso.txt", server_folder / "incasso.txt")
    finally:
        server.close()


def scheduled_operation(desk, report):
    done = desk.root / "ripristino"
    (desk.main / "Restore51.bat").write_bytes(f"echo 'Restore51.bat ha lavorato' > {done}\r\n".encode())
    desk.settings(Orbis_Directory="C:\\MERIDIA")
    desk.write_whole(desk.c("MERIDIA\\_Schedulatore.ini"), "[VARIE]\r\nLUN#0930=25#NOTTE#\r\n")

    def handed_over():
        lines = desk.c("MERIDIA\\_Local.ini").read_text("cp1252").splitlines()
        return [done.read_text().rstrip(), "; ".join(line for line in lines if "=" in line)]

    report.job(
        "scheduled operation, Monday 9:30",
        lambda: once(desk, "pianificate", "--now", "2026-11-23 09:30", "--postazione", "SERVER"),
        lambda: done.exists() and done.read_text(),
        handed_over,
    )
