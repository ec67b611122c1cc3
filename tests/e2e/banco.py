# SPDX-License-Identifier: MIT
"""The bench: the real program in a folder of its own, on a virtual display, beside a simulated
indicator. Whatever is started here is ended here, also when a test fails half way."""

import os
import pathlib
import re
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import threading
import time
import unittest

import linea

PASO = 0.02  # seconds between two looks at a condition


def esperar(condicion, segundos, que):
    """Waits for a condition and returns its value; fails, saying what was missing, after the limit."""
    limite = time.monotonic() + segundos
    while True:
        valor = condicion()
        if valor:
            return valor
        if time.monotonic() > limite:
            raise AssertionError(f"not seen in {segundos} s: {que}")
        time.sleep(PASO)


def contenido(ruta):
    """The bytes of a file, none when it is not there."""
    try:
        return pathlib.Path(ruta).read_bytes()
    except FileNotFoundError:
        return b""


class Simulador:
    """A running bnDX5-simulador and what it has said so far."""

    def __init__(self, orden):
        self.proceso = subprocess.Popen(
            orden, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, encoding="utf-8"
        )
        self.lineas = []
        self._lector = threading.Thread(target=self._leer, daemon=True)
        self._lector.start()

    def _leer(self):
        for linea in self.proceso.stdout:
            self.lineas.append(linea.rstrip("\n"))

    def veces(self, suceso):
        """How often it has told of an event."""
        return sum(linea.startswith(suceso) for linea in list(self.lineas))

    def resumen(self):
        """Ends it, if it has not ended by itself, and returns its counts."""
        if self.proceso.poll() is None:
            self.proceso.send_signal(signal.SIGTERM)
        self.proceso.wait(10)
        self._lector.join(10)
        if self.proceso.returncode != 0:
            raise AssertionError(f"the simulator failed: {self.lineas}")
        return {clave: int(n) for clave, n in re.findall(r"(\w+)=(\d+)", self.lineas[-1])}


class Banco:
    """The folder, the display and the processes of one test."""

    def __init__(self, construccion):
        self.construccion = pathlib.Path(construccion).resolve()
        self.carpeta = pathlib.Path(tempfile.mkdtemp(prefix="bnDX5-e2e-"))
        self.programa = self.carpeta / "programa"
        self.puerto = self.carpeta / "indicador"
        self.texto = self.carpeta / "Pesadas.txt"
        self.libro = self.carpeta / "Pesadas.xls"
        self.registro = self.carpeta / "registro"
        self.almacen = self.programa / "bnGuardo.txt"
        self.nota = self.programa / "bnGuardo.nota"
        self.errores = self.carpeta / "errores"
        self._procesos = []
        self._programas = []
        self._pantalla = None

    def __enter__(self):
        try:
            self.programa.mkdir()
            (self.carpeta / "casa").mkdir(mode=0o700)
            shutil.copy2(self.construccion / "bnDX5", self.programa / "bnDX5")
            self._pantalla = self._abrir_pantalla()
        except BaseException:
            self.__exit__(*sys.exc_info())
            raise
        return self

    def __exit__(self, tipo, error, traza):
        for proceso in reversed(self._procesos):
            if proceso.poll() is None:
                self._acabar(proceso)
            proceso.wait()
            if proceso.stdout:
                proceso.stdout.close()
        if tipo is not None:
            salida = contenido(self.errores).decode("utf-8", "replace")
            print(f"--- what the program wrote:\n{salida}---", file=sys.stderr)
        shutil.rmtree(self.carpeta, ignore_errors=True)

    @staticmethod
    def _acabar(proceso):
        """Asks first: a killed display server leaves its lock and its socket behind."""
        proceso.terminate()
        try:
            proceso.wait(5)
        except subprocess.TimeoutExpired:
            proceso.kill()

    def _abrir_pantalla(self):
        """Starts a display server on a free number; another one may snatch it away meanwhile."""
        for _ in range(5):
            pantalla = self._intentar_pantalla()
            if pantalla:
                return pantalla
        raise AssertionError("Xvfb has not started")

    def _intentar_pantalla(self):
        leer, escribir = os.pipe()
        with os.fdopen(leer) as numero:
            try:
                # Without -noreset it would be deaf for a moment whenever its last client leaves.
                orden = ["Xvfb", "-displayfd", str(escribir), "-screen", "0", "1024x768x24"]
                servidor = subprocess.Popen(
                    orden + ["-nolisten", "tcp", "-noreset"],
                    pass_fds=[escribir],
                    stdout=subprocess.DEVNULL,
                    stderr=subprocess.DEVNULL,
                )
            finally:
                os.close(escribir)
            self._procesos.append(servidor)
            n = numero.readline().strip()  # ends, empty, if it dies
        try:
            with socket.socket(socket.AF_UNIX) as conexion:
                conexion.connect(f"/tmp/.X11-unix/X{n}")
        except OSError:
            self._acabar(servidor)
            return None
        return f":{n}" if servidor.poll() is None else None

    def entorno(self):
        """What the program's processes see: this display, and a home of their own."""
        entorno = {k: v for k, v in os.environ.items() if not k.startswith(("XDG_", "WAYLAND_"))}
        entorno.update(
            HOME=str(self.carpeta / "casa"),
            XDG_RUNTIME_DIR=str(self.carpeta / "casa"),
            XDG_DOCUMENTS_DIR=str(self.carpeta),
            DISPLAY=self._pantalla,
            QT_QPA_PLATFORM="xcb",
        )
        return entorno

    def configurar(self, general=(), destino=None, puerto=None, excel=None):
        """Writes bnDX5.ini: automatic downloads every second into the text destination, and into the
        worksheet when its keys are given."""
        claves = {
            "Param": "19200,N,8,1",
            "Autom": "1;False",
            "TimeOut": "300;4",
        }
        claves.update(general)
        lineas = ["[General]"]
        lineas += [f"{clave}={valor}" for clave, valor in claves.items()]
        lineas += ["[Excel]"]
        hoja = {"Uso": "False", "Motor": "ninguno"} if excel is None else excel
        lineas += [f"{clave}={valor}" for clave, valor in hoja.items()]
        lineas += ["[Texto]", "Uso=True", f"Destino={destino or self.texto}"]
        lineas += ["[Puertos]", f"1={puerto or self.puerto}"]
        ini = "".join(linea + "\r\n" for linea in lineas)
        (self.programa / "bnDX5.ini").write_bytes(ini.encode("utf-8"))

    def simular(self, *opciones):
        """Starts the simulated indicator and waits until its line is there."""
        orden = [str(self.construccion / "bnDX5-simulador"), "--enlace", str(self.puerto)]
        orden += ["--registro", str(self.registro), "--detalle"]
        if "--parametros" not in opciones:
            orden += ["--parametros", "19200,N,8,1"]
        simulador = Simulador(orden + [str(opcion) for opcion in opciones])
        self._procesos.append(simulador.proceso)
        esperar(lambda: simulador.lineas, 10, "the simulator's line")
        return simulador

    def lanzar(self, *orden):
        """Starts a process of the display's; it is ended with the bench."""
        proceso = subprocess.Popen(
            orden,
            env=self.entorno(),
            stdin=subprocess.DEVNULL,
            stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL,
        )
        self._procesos.append(proceso)
        return proceso

    def arrancar(self):
        """Starts the program."""
        with open(self.errores, "ab") as errores:
            proceso = subprocess.Popen(
                [str(self.programa / "bnDX5")],
                cwd=self.carpeta,
                env=self.entorno(),
                stdin=subprocess.DEVNULL,
                stdout=errores,
                stderr=errores,
            )
        self._procesos.append(proceso)
        self._programas.append(proceso)
        return proceso

    def matar(self, programa):
        """Ends the program without a warning."""
        self._programas.remove(programa)
        programa.kill()
        programa.wait()

    def terminar(self, programa):
        """Asks the program to end, as the system does when it shuts down; returns its code."""
        programa.terminate()
        return self.acabado(programa)

    def acabado(self, programa):
        """Waits for a program that ends by itself, and returns its code."""
        self._programas.remove(programa)
        return programa.wait(20)

    def comprobar_vivos(self):
        """Every program started and not killed must still be running."""
        for programa in self._programas:
            if programa.poll() is not None:
                raise AssertionError(f"the program has ended: {programa.returncode}")

    def ventanas(self):
        """The program's visible windows: the main one and, where there is one, a message box."""
        return self.xdotool("search", "--onlyvisible", "--name", "^bnDX5$").split()

    def xdotool(self, *argumentos):
        """What xdotool answers; nothing when it fails, for want of a window for one."""
        orden = ["xdotool", *(str(argumento) for argumento in argumentos)]
        return subprocess.run(
            orden, env=self.entorno(), capture_output=True, text=True, timeout=20, check=False
        ).stdout

    def reconocidas(self):
        """The data strings whose acknowledge the indicator has heard."""
        return contenido(self.registro).split(b"\r\n")[:-1]

    def lineas_texto(self):
        """How many whole lines the text destination holds."""
        return contenido(self.texto).count(b"\r\n")

    def sobras(self):
        """What stands in the program's folder beyond the program, its settings, and the store and
        the note of the last download: weighings that wait, or something left behind."""
        suyos = {"bnDX5", "bnDX5.exe", "bnDX5.ini", "bnDX5.lock", "bnGuardo.txt", "bnGuardo.nota"}
        return sorted(f.name for f in self.programa.iterdir() if f.name not in suyos)


class PruebaConBanco(unittest.TestCase):
    """A test with a bench of its own."""

    construccion = "build"
    maxDiff = 4000

    def setUp(self):
        self.banco = Banco(self.construccion)
        self.banco.__enter__()

    def run(self, result=None):
        """As ever; then the bench is cleared away, which tells more when the test has failed."""
        self.banco = None
        antes = len(result.failures) + len(result.errors) if result else 0
        try:
            return super().run(result)
        finally:
            if self.banco is not None:
                mal = result and len(result.failures) + len(result.errors) > antes
                self.banco.__exit__(AssertionError if mal else None, None, None)

    def esperar(self, condicion, segundos, que):
        """Waits for a condition, with a limit; the program has to be alive meanwhile, and after."""

        def cumplida():
            self.banco.comprobar_vivos()
            return condicion()

        return esperar(cumplida, segundos, que)

    def comprobar_texto(self, cuantas):
        """So many weighings were acknowledged, and all stand in the text file, once and in order;
        nothing waits any more. Returns what stands there."""
        self.esperar(lambda: self.banco.lineas_texto() >= cuantas, 20, "the weighings")
        self.esperar(lambda: not self.banco.sobras(), 20, "the end of what was put aside")
        reconocidas = self.banco.reconocidas()
        self.assertEqual(len(reconocidas), cuantas)
        escritas = contenido(self.banco.texto).splitlines(keepends=True)
        todas = linea.repeticiones_posibles(reconocidas, escritas)
        self.assertEqual(b"".join(escritas), linea.lineas(todas))
        return todas

    def tearDown(self):
        self.banco.comprobar_vivos()


def ejecutar():
    """Runs the tests of the calling script: first argument, the build folder."""
    if len(sys.argv) > 1 and not sys.argv[1].startswith("-"):
        PruebaConBanco.construccion = sys.argv.pop(1)
    unittest.main(verbosity=2)
