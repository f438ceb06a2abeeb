"""A devices file that includes the one of all desks: both count, and a mistake in either keeps the bridge from starting."""

from harness import Scenario, wait_for

COMMON = """\
[[printer]]
name   = "SAMSUNG SRP-500"
port   = "COM3:"
target = "folder:stampe/comuni"

[bridge]
diary  = "diario"
"""


class IncludedDevicesFile(Scenario):
    def write(self, name, text):
        path = self.desk.main / name
        path.parent.mkdir(exist_ok=True)
        path.write_text(text, encoding="utf-8")

    def test_the_desk_prints_where_its_own_key_says_and_keeps_what_the_common_file_switches_on(self):
        self.write("società/comune €.toml", COMMON)
        self.write(
            "devices.toml",
            'include = "società/comune €.toml"\n'
            '[[printer]]\nname = "SAMSUNG SRP-500"\ntarget = "folder:stampe/cassa"\n',
        )
        self.desk.settings(Orbis_Setting=0, CORT_Active=-1, CORT_Printer="SAMSUNG", CORT_COM=3)
        self.desk.start()
        self.desk.drop("preconto.txt", "uno#0\r\n#1\r\n", "CortOrbis")
        wait_for(lambda: (self.desk.main / "stampe" / "cassa" / "000001.jsonl").exists(), "the job is printed")
        self.assertFalse((self.desk.main / "stampe" / "comuni").exists())
        wait_for(lambda: any((self.desk.main / "diario").iterdir()), "the diary is kept")

    def refusal(self):
        program = self.desk.launch(*self.desk.arguments())
        self.assertEqual(program.wait(), 2)
        self.assertEqual((program.output, len(program.complaints)), ([], 1), program.complaints)
        self.assertFalse(self.desk.settings_file.exists(), "nothing has been touched")
        return program.complaints[0]

    def test_a_mistake_in_the_included_file_is_refused_with_its_place_there(self):
        self.write("devices.toml", 'include = "società.toml"\n')
        self.write("società.toml", '[bridge]\nprompt = "sì"\n')
        self.assertRegex(self.refusal(), 'società.toml, riga 2, colonna 10: "prompt" deve essere true o false$')

    def test_an_included_file_that_is_missing_is_named_with_the_line_that_asks_for_it(self):
        self.write("devices.toml", '# cassa 3\n\ninclude = "manca.toml"\n')
        self.assertRegex(self.refusal(), "devices.toml, riga 3, colonna 11: .*manca.toml: il file non si può leggere$")

    def test_an_included_file_cannot_include_itself_or_another(self):
        self.write("devices.toml", 'include = "devices.toml"\n')
        self.assertRegex(self.refusal(), "devices.toml, riga 1, colonna 11: un file incluso non può includerne un altro$")
