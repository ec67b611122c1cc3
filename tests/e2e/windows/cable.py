#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""A null-modem cable between two COM ports of Wine's: two pseudo-terminals, joined.

As a program: cable.py COM21 COM22 COMMAND... runs the command with the cable in place, named by
BN_CABLE_1 and BN_CABLE_2, and ends as it ends."""

import os
import pathlib
import select
import subprocess
import sys
import termios
import threading
import tty


def _crudo(descriptor):
    tty.setraw(descriptor, termios.TCSANOW)


class Cable:
    def __init__(self, uno, otro):
        self.nombres = (uno, otro)
        self._puertos = pathlib.Path(os.environ["WINEPREFIX"]) / "dosdevices"
        self._maestros = []
        self._esclavos = []  # held open: a line outlives its users
        for nombre in self.nombres:
            maestro, esclavo = os.openpty()
            _crudo(esclavo)
            os.set_blocking(maestro, False)
            self._maestros.append(maestro)
            self._esclavos.append(esclavo)
            enlace = self._puertos / nombre.lower()
            enlace.unlink(missing_ok=True)
            enlace.symlink_to(os.ttyname(esclavo))
        self._fin, self._aviso = os.pipe()
        self._hilo = threading.Thread(target=self._llevar, daemon=True)
        self._hilo.start()

    def _llevar(self):
        """Carries bytes both ways; what one end does not take waits, and holds the other back."""
        pendiente = {m: b"" for m in self._maestros}  # to be written there
        frente = dict(zip(self._maestros, reversed(self._maestros)))
        while True:
            leer = [m for m in self._maestros if len(pendiente[frente[m]]) < 4096]
            escribir = [m for m in self._maestros if pendiente[m]]
            listos, libres, _ = select.select(leer + [self._fin], escribir, [])
            if self._fin in listos:
                return
            for maestro in listos:
                pendiente[frente[maestro]] += os.read(maestro, 4096)
            for maestro in libres:
                escritos = os.write(maestro, pendiente[maestro])
                pendiente[maestro] = pendiente[maestro][escritos:]

    def quitar(self):
        os.write(self._aviso, b"x")
        self._hilo.join()
        for descriptor in self._maestros + self._esclavos + [self._fin, self._aviso]:
            os.close(descriptor)
        for nombre in self.nombres:
            (self._puertos / nombre.lower()).unlink(missing_ok=True)


def main(uno, otro, orden):
    cable = Cable(uno, otro)
    try:
        entorno = dict(os.environ, BN_CABLE_1=uno, BN_CABLE_2=otro)
        return subprocess.run(orden, env=entorno, check=False).returncode
    finally:
        cable.quitar()


if __name__ == "__main__":
    sys.exit(main(sys.argv[1], sys.argv[2], sys.argv[3:]))
