#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""The Windows program under Wine, on the virtual display that is there: it downloads over a COM
port from the simulated indicator at the cable's other end, keeps its logon entry in the registry,
starts once only, and leaves nothing behind when it is closed.

WINEPREFIX and DISPLAY are the caller's, with Wine running already and a window manager."""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent))

import banco  # noqa: E402
import linea  # noqa: E402
from cable import Cable  # noqa: E402

RUN = r"HKCU\Software\Microsoft\Windows\CurrentVersion\Run"


def de_wine(ruta):
    """A path as Windows programs name it."""
    return "Z:" + str(ruta).replace("/", "\\")


def procesos_de(nombre):
    """The command lines, of whatever runs in this Wine, that name a file or a folder."""
    wine = os.fsencode("WINEPREFIX=" + os.environ["WINEPREFIX"])
    ordenes = []
    for proceso in pathlib.Path("/proc").glob("[0-9]*"):
        try:
            nuestro = wine in (proceso / "environ").read_bytes().split(b"\0")
            orden = (proceso / "cmdline").read_bytes()
        except OSError:
            continue  # it has ended meanwhile
        if nuestro and os.fsencode(nombre) in orden:
            ordenes.append(orden)
    return ordenes


class BancoWindows(banco.Banco):
    """The bench, with Wine between the program and the machine."""

    def __enter__(self):
        # A folder such as users have, and beyond the letters of any one old code page.
        self.programa = self.carpeta / "Báscula-ñ-Вес"
        self.almacen = self.programa / "bnGuardo.txt"
        self.exe = self.programa / "bnDX5.exe"
        self.texto = self.carpeta / "Pesadas de la báscula ñ.txt"
        self.variables = {}  # of the environment, for the program and what it starts
        self._pantalla = os.environ["DISPLAY"]
        self.programa.mkdir()
        shutil.copy2(self.construccion / "bnDX5.exe", self.exe)
        self.cable = Cable("COM5", "COM6")
        return self

    def __exit__(self, tipo, error, traza):
        try:
            super().__exit__(tipo, error, traza)
        finally:
            self.cable.quitar()
            self.wine("reg", "delete", RUN, "/v", "bnDX5", "/f")

    def entorno(self):
        # Wine's display goes through its own windows; its usual font engine finds no glyphs.
        return dict(os.environ, QT_QPA_PLATFORM="windows:fontengine=freetype", **self.variables)

    def wine(self, *orden):
        """Runs a program of Wine's own; whether it ended well."""
        mudo = subprocess.DEVNULL
        return subprocess.run(
            ["wine", *orden], env=self.entorno(), stdout=mudo, stderr=mudo, timeout=60, check=False
        ).returncode == 0

    def configurar_com(self, excel=None, canal=5):
        """Writes bnDX5.ini: the text destination, and the worksheet when its keys are given."""
        lineas = ["[General]", f"Canal={canal}", "Param=9600,N,8,1", "Autom=1;False", "[Excel]"]
        hoja = {"Uso": "False", "Motor": "ninguno"} if excel is None else excel
        lineas += [f"{clave}={valor}" for clave, valor in hoja.items()]
        lineas += ["[Texto]", "Uso=True", f"Destino={de_wine(self.texto)}"]
        ini = "".join(una + "\r\n" for una in lineas)
        (self.programa / "bnDX5.ini").write_bytes(ini.encode("utf-8"))

    def simular(self, *opciones):
        orden = ["wine", str(self.construccion / "bnDX5-simulador.exe"), "--dispositivo", "COM6"]
        orden += ["--registro", de_wine(self.registro), "--detalle"]
        simulador = banco.Simulador(orden + [str(opcion) for opcion in opciones])
        self._procesos.append(simulador.proceso)
        banco.esperar(lambda: simulador.lineas, 30, "the simulator's line")
        return simulador

    def simular_sin_cable(self, puerto, *opciones):
        """An indicator of this machine's own right behind a COM port of Wine's, as quick as can be."""
        self.puerto = pathlib.Path(os.environ["WINEPREFIX"]) / "dosdevices" / puerto
        simulador = banco.Simulador(
            [
                str(self.construccion.parent / "bnDX5-simulador"),
                *("--enlace", str(self.puerto), "--parametros", "9600,N,8,1"),
                *("--registro", str(self.registro), "--detalle"),
                *(str(opcion) for opcion in opciones),
            ]
        )
        self._procesos.append(simulador.proceso)
        banco.esperar(self.puerto.is_symlink, 10, "the port")
        return simulador

    def arrancar(self):
        with open(self.errores, "ab") as errores:
            proceso = subprocess.Popen(
                ["wine", str(self.exe)],
                cwd=self.carpeta,
                env=self.entorno(),
                stdin=subprocess.DEVNULL,
                stdout=errores,
                stderr=errores,
            )
        self._procesos.append(proceso)
        return proceso

    def ventana(self):
        banco.esperar(self.ventanas, 60, "the main window")
        return self.ventanas()[0]

    def pulsar(self, tecla):
        """A key with Alt, for the program's window."""
        self.xdotool("windowactivate", "--sync", self.ventana(), "key", "alt+" + tecla)

    def arranque(self):
        """The value of the logon entry; nothing when there is none."""
        fichero = self.carpeta / "run.reg"
        if not self.wine("reg", "export", RUN, de_wine(fichero), "/y"):
            return None
        hallado = re.search(r'^"bnDX5"="(.*)"\r?$', fichero.read_text("utf-16"), re.MULTILINE)
        return hallado and hallado[1].replace("\\\\", "\\")

    def contar(self):
        print(banco.contenido(self.errores).decode("utf-8", "replace"), file=sys.stderr)

    def restos(self):
        """The processes that run the program's file."""
        return procesos_de(self.programa.name)


class PruebaConWindows(unittest.TestCase):
    """A test with a bench of its own."""

    construccion = "build/windows"
    maxDiff = 4000

    def run(self, result=None):
        """As ever, with a bench, which tells more when the test has failed."""
        antes = len(result.failures) + len(result.errors) if result else 0
        with BancoWindows(self.construccion) as self.banco:
            super().run(result)
            if result and len(result.failures) + len(result.errors) > antes:
                self.banco.contar()

    def cerrar(self, programa):
        self.assertNotEqual(self.banco.restos(), [])
        self.banco.pulsar("c")
        self.assertEqual(programa.wait(30), 0)
        self.assertEqual(self.banco.restos(), [])


class ProgramaWindows(PruebaConWindows):
    def test_a_download_over_a_com_port_reaches_the_text_file_byte_for_byte(self):
        self.banco.configurar_com()
        simulador = self.banco.simular("--pesadas", 40, "--salir", "--averia-control", "5")
        programa = self.banco.arrancar()
        simulador.proceso.wait(90)
        banco.esperar(lambda: self.banco.lineas_texto() >= 40, 10, "the text file")
        self.assertIsNone(programa.poll())
        self.assertEqual(simulador.resumen()["reconocidas"], 40)
        self.assertEqual(
            banco.contenido(self.banco.texto), linea.lineas(self.banco.reconocidas())
        )
        self.cerrar(programa)

    def test_an_indicator_that_answers_at_once_loses_nothing(self):
        self.banco.configurar_com(canal=12)
        self.banco.simular_sin_cable("com12", "--sin-ritmo", "--pesadas", 100, "--tandas", 3)
        programa = self.banco.arrancar()
        banco.esperar(lambda: len(self.banco.reconocidas()) == 300, 60, "the weighings")
        banco.esperar(lambda: self.banco.lineas_texto() >= 300, 20, "the text file")
        self.assertEqual(
            banco.contenido(self.banco.texto), linea.lineas(self.banco.reconocidas())
        )
        self.cerrar(programa)

    def test_what_a_killed_program_has_received_is_saved_by_the_next_start(self):
        self.banco.configurar_com()
        simulador = self.banco.simular("--pesadas", 200, "--espera", 1000)
        primero = self.banco.arrancar()
        banco.esperar(lambda: len(self.banco.reconocidas()) >= 10, 60, "ten weighings")
        primero.kill()
        primero.wait()
        banco.esperar(lambda: simulador.veces("abandonada"), 20, "the indicator giving up")
        simulador.proceso.kill()
        simulador.proceso.wait()
        reconocidas = self.banco.reconocidas()
        self.assertLess(len(reconocidas), 200, "the download had already ended")
        recibidas = banco.contenido(self.banco.almacen).split(b"\r\n")[:-1]
        self.assertEqual(recibidas[: len(reconocidas)], reconocidas)
        self.assertLessEqual(len(recibidas), len(reconocidas) + 1, "at most one not acknowledged")
        segundo = self.banco.arrancar()
        banco.esperar(
            lambda: self.banco.lineas_texto() >= len(recibidas), 60, "what had been received"
        )
        self.assertEqual(banco.contenido(self.banco.texto), linea.lineas(recibidas))
        self.assertEqual(len(self.banco.ventanas()), 1, "there is nothing to tell")
        self.cerrar(segundo)

    def test_the_logon_entry_is_written_and_removed(self):
        self.banco.configurar_com()
        programa = self.banco.arrancar()
        self.banco.ventana()
        self.assertIsNone(self.banco.arranque())
        self.banco.pulsar("n")
        banco.esperar(self.banco.arranque, 20, "the logon entry")
        self.assertEqual(self.banco.arranque(), de_wine(self.banco.exe))
        self.banco.pulsar("n")
        banco.esperar(lambda: not self.banco.arranque(), 20, "the end of the logon entry")
        self.cerrar(programa)

    def test_a_second_start_ends_at_once_and_leaves_the_first_one_working(self):
        self.banco.configurar_com()
        primero = self.banco.arrancar()
        self.banco.ventana()
        segundo = self.banco.arrancar()
        self.assertEqual(segundo.wait(60), 0)
        self.assertIsNone(primero.poll())
        self.assertEqual(len(self.banco.ventanas()), 1)
        self.cerrar(primero)

    def test_a_second_start_brings_a_hidden_window_back(self):
        self.banco.configurar_com()
        primero = self.banco.arrancar()
        self.banco.ventana()
        self.banco.pulsar("o")
        banco.esperar(lambda: not self.banco.ventanas(), 20, "the window going away")
        segundo = self.banco.arrancar()
        self.assertEqual(segundo.wait(60), 0)
        self.banco.ventana()
        self.cerrar(primero)


def ejecutar():
    """Runs the tests of the calling script: first argument, the build folder."""
    if len(sys.argv) > 1 and not sys.argv[1].startswith("-"):
        PruebaConWindows.construccion = sys.argv.pop(1)
    unittest.main(verbosity=2)


if __name__ == "__main__":
    ejecutar()
