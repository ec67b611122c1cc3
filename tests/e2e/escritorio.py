# SPDX-License-Identifier: MIT
"""A desktop on the bench's display: a window manager, a notification area, and the hands of a user
who waits for what he has asked for before he goes on."""

import ctypes
import os
import time

import banco

SEGUNDOS = 20  # how long a busy computer may take to show something
INSISTIR = 2  # after how long a user tries again


class Escritorio:
    """The desktop of one bench; keyboard and mouse are the display server's own."""

    def __init__(self, un_banco):
        self._banco = un_banco
        un_banco.lanzar("openbox", "--sm-disable")
        banco.esperar(self._hay_gestor, SEGUNDOS, "the window manager")
        un_banco.lanzar(
            *("trayer", "--edge", "top", "--align", "right", "--SetDockType", "false"),
            *("--widthtype", "request", "--height", "24"),
        )
        banco.esperar(self._hay_bandeja, SEGUNDOS, "the notification area")

    def _hay_gestor(self):
        return self._banco.xdotool("get_num_desktops").strip().isdigit()

    def _hay_bandeja(self):
        """Programs look for the owner of a selection, of which xdotool knows nothing."""
        x11 = ctypes.CDLL("libX11.so.6")
        x11.XOpenDisplay.restype = ctypes.c_void_p
        x11.XInternAtom.restype = ctypes.c_ulong
        x11.XGetSelectionOwner.restype = ctypes.c_ulong
        pantalla = x11.XOpenDisplay(self._banco.entorno()["DISPLAY"].encode("ascii"))
        if not pantalla:
            return False
        pantalla = ctypes.c_void_p(pantalla)
        atomo = x11.XInternAtom(pantalla, b"_NET_SYSTEM_TRAY_S0", 0)
        duena = x11.XGetSelectionOwner(pantalla, ctypes.c_ulong(atomo))
        x11.XCloseDisplay(pantalla)
        return duena != 0

    def visibles(self, nombre):
        """The windows on the screen whose title matches."""
        return self._banco.xdotool("search", "--onlyvisible", "--name", nombre).split()

    def delante(self, nombre, aparte_de=()):
        """The window that has the keyboard, if its title matches; waits for it."""

        def activa():
            ventana = self._banco.xdotool("getactivewindow").strip()
            if not ventana or ventana in aparte_de or ventana not in self.visibles(nombre):
                return None
            foco = self._banco.xdotool("getwindowfocus", "-f").strip()
            return ventana if foco == ventana else None

        return banco.esperar(activa, SEGUNDOS, f"the window {nombre}, in front")

    def esperar_sin(self, ventana, nombre):
        """Waits until a window has gone from the screen."""
        banco.esperar(
            lambda: ventana not in self.visibles(nombre), SEGUNDOS, f"the end of {nombre}"
        )

    def teclear(self, *teclas):
        """Presses keys, one after the other, for whatever has the keyboard."""
        self._banco.xdotool("key", "--delay", "20", *teclas)

    def icono(self):
        """The program's icon in the notification area, once it is alone there."""
        sueltas = self._sin_titulo()
        return sueltas[0] if len(sueltas) == 1 else None

    def menu(self, icono):
        """The menu that has come up beside the icon."""
        otras = [ventana for ventana in self._sin_titulo() if ventana != icono]
        return otras[0] if otras else None

    def _sin_titulo(self):
        """Icon and menus bear the program's class, but are not found by a title."""
        clase = self._banco.xdotool("search", "--onlyvisible", "--class", "^bnDX5$").split()
        con_titulo = self.visibles(".")
        return [ventana for ventana in clase if ventana not in con_titulo]

    def pulsar(self, ventana, veces=1):
        """Clicks in the middle of a window."""
        lineas = self._banco.xdotool("getwindowgeometry", "--shell", ventana).split()
        donde = {clave: int(n) for clave, n in (linea.split("=") for linea in lineas)}
        x = donde["X"] + donde["WIDTH"] // 2
        y = donde["Y"] + donde["HEIGHT"] // 2
        self._banco.xdotool(
            *("mousemove", "--sync", x, y, "click", "--repeat", veces, "--delay", 60, 1)
        )

    def insistir(self, accion, condicion, que):
        """Does something again every now and then until a condition holds: a menu may be on the
        screen a moment before it has the keyboard."""
        ultima = None

        def cumplida():
            nonlocal ultima
            valor = condicion()
            if not valor and (ultima is None or time.monotonic() - ultima > INSISTIR):
                ultima = time.monotonic()
                accion()
            return valor

        return banco.esperar(cumplida, SEGUNDOS, que)


def procesos_de(ejecutable):
    """The processes that run an executable file."""
    encontrados = []
    for pid in filter(str.isdigit, os.listdir("/proc")):
        try:
            if os.readlink(f"/proc/{pid}/exe") == str(ejecutable):
                encontrados.append(int(pid))
        except OSError:
            pass  # it has ended meanwhile, or is another user's
    return encontrados
