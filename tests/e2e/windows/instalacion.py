#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""The installer, silently, as an ordinary user of Windows: it puts the program where that user can
write, the program starts from there, and removing it leaves the user's data."""

import os
import pathlib
import subprocess
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent))
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))

import banco  # noqa: E402
import programa  # noqa: E402

DESINSTALAR = r"HKCU\Software\Microsoft\Windows\CurrentVersion\Uninstall\bnDX5"
EN_USO = 2


class Instalacion(unittest.TestCase):
    construccion = "build/windows"

    def setUp(self):
        paquetes = pathlib.Path(self.construccion).resolve().parent / "packages"
        instaladores = list(paquetes.glob("bnDX5-*-windows-x64-instalar.exe"))
        self.assertEqual(len(instaladores), 1, f"in {paquetes}")
        self.instalador = instaladores[0]
        usuario = next((pathlib.Path(os.environ["WINEPREFIX"]) / "drive_c/users").glob("*/AppData"))
        self.carpeta = usuario / "Local/Programs/bnDX5"
        menu = usuario / "Roaming/Microsoft/Windows/Start Menu/Programs"
        self.enlace = menu / "Indicador Balnor DX5.lnk"

    def ejecutar(self, fichero, *opciones):
        return subprocess.run(
            ["wine", str(fichero), "/S", *opciones],
            stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL,
            timeout=120,
            check=False,
        ).returncode

    def test_installs_starts_and_leaves_the_users_data_when_removed(self):
        self.assertEqual(self.ejecutar(self.instalador), 0)
        instalados = {f.name for f in self.carpeta.iterdir()}
        self.assertEqual(instalados, {"bnDX5.exe", "LICENCIA.txt", "desinstalar.exe"})
        self.assertTrue(self.enlace.exists())

        with programa.BancoWindows(self.construccion) as banco_:
            self.assertTrue(banco_.wine("reg", "query", DESINSTALAR, "/v", "UninstallString"))
            banco_.exe = self.carpeta / "bnDX5.exe"
            en_marcha = banco_.arrancar()
            banco_.pulsar("n")
            banco.esperar(banco_.arranque, 20, "the logon entry")
            self.assertIn(r"\Programs\bnDX5\bnDX5.exe", banco_.arranque())
            self.assertEqual(self.ejecutar(self.instalador), EN_USO, "it is running")
            banco_.pulsar("c")
            self.assertEqual(en_marcha.wait(30), 0)
            self.assertTrue((self.carpeta / "bnDX5.ini").exists())

            self.assertEqual(self.ejecutar(self.instalador), 0, "over the old one")
            self.ejecutar(self.carpeta / "desinstalar.exe")
            # It goes on as a copy of itself: its own file is the last to go but one.
            banco.esperar(
                lambda: not banco_.wine("reg", "query", DESINSTALAR), 60, "the uninstaller's end"
            )
            banco.esperar(lambda: not banco_.arranque(), 20, "the end of the logon entry")
        banco.esperar(
            lambda: {f.name for f in self.carpeta.iterdir()} == {"bnDX5.ini"}, 20, "only the data"
        )
        self.assertFalse(self.enlace.exists())

    def test_the_logon_entry_of_another_copy_stays(self):
        carpeta = pathlib.Path(os.environ["WINEPREFIX"]) / "drive_c/segunda"
        otra = r"C:\una carpeta\bnDX5.exe"
        with programa.BancoWindows(self.construccion) as banco_:
            self.assertEqual(self.ejecutar(self.instalador, r"/D=C:\segunda"), 0)
            self.assertTrue((carpeta / "bnDX5.exe").exists())
            orden = ("reg", "add", programa.RUN, "/v", "bnDX5", "/d", otra, "/f")
            self.assertTrue(banco_.wine(*orden))
            self.ejecutar(carpeta / "desinstalar.exe")
            # The folder, without data in it, is the last thing to go.
            banco.esperar(lambda: not carpeta.exists(), 60, "the uninstaller's end")
            self.assertEqual(banco_.arranque(), otra)


if __name__ == "__main__":
    if len(sys.argv) > 1 and not sys.argv[1].startswith("-"):
        Instalacion.construccion = sys.argv.pop(1)
    unittest.main(verbosity=2)
