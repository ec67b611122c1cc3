#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""The same weighings with LibreOffice through UNO. Arguments: nuevo|anexar DATOS BASE LIBRO VECES.

Whole areas are read and written with one call each, the fastest way the bridge offers. After the
seconds comes a line "rss KIB": the peak of the office's own process.
"""

import glob
import os
import shutil
import subprocess
import sys
import tempfile
import time

import uno
from com.sun.star.beans import PropertyValue

FORMATO = "MS Excel 97"


def propiedad(nombre, valor):
    resultado = PropertyValue()
    resultado.Name, resultado.Value = nombre, valor
    return resultado


def leer(ruta):
    with open(ruta, encoding="utf-8") as fichero:
        for linea in fichero:
            c = linea.rstrip("\n").split("\t")
            yield (float(c[0]), c[1], *map(float, c[2:8]))


def conectar(tubo, oficina):
    local = uno.getComponentContext()
    resolvedor = local.ServiceManager.createInstanceWithContext(
        "com.sun.star.bridge.UnoUrlResolver", local
    )
    limite = time.monotonic() + 120
    while True:
        try:
            contexto = resolvedor.resolve(
                f"uno:pipe,name={tubo};urp;StarOffice.ComponentContext"
            )
            return contexto.ServiceManager.createInstanceWithContext(
                "com.sun.star.frame.Desktop", contexto
            )
        except Exception:
            if time.monotonic() > limite or oficina.poll() is not None:
                raise
            time.sleep(0.1)


def primera_fila(hoja):
    cursor = hoja.createCursor()
    cursor.gotoEndOfUsedArea(False)
    ultima = cursor.RangeAddress.EndRow
    for numero, fila in enumerate(hoja.getCellRangeByPosition(0, 0, 7, ultima).getDataArray()):
        if all(valor == "" for valor in fila):
            return numero
    return ultima + 1


def anadir(escritorio, caso, filas, salida):
    oculto = propiedad("Hidden", True)
    url = uno.systemPathToFileUrl(salida)
    origen = url if caso == "anexar" else "private:factory/scalc"
    libro = escritorio.loadComponentFromURL(origen, "_blank", 0, (oculto,))
    if caso == "nuevo":
        libro.Sheets.getByIndex(0).Name = "Pesadas"
    hoja = libro.Sheets.getByName("Pesadas")
    fila = primera_fila(hoja)
    ultima = fila + len(filas) - 1
    hoja.getCellRangeByPosition(0, fila, 7, ultima).setDataArray(filas)
    idioma = uno.createUnoStruct("com.sun.star.lang.Locale")
    formatos = libro.NumberFormats
    clave = formatos.queryKey("DD/MM/YYYY HH:MM", idioma, False)
    if clave == -1:
        clave = formatos.addNew("DD/MM/YYYY HH:MM", idioma)
    hoja.getCellRangeByPosition(0, fila, 0, ultima).NumberFormat = clave
    libro.storeToURL(url, (propiedad("FilterName", FORMATO),))
    libro.close(True)


def pico_kib(raiz):
    """The peak of the office, which the launcher starts as a child."""
    pico, pendientes = 0, [raiz]
    while pendientes:
        pid = pendientes.pop()
        with open(f"/proc/{pid}/status") as estado:
            pico = max([pico] + [int(l.split()[1]) for l in estado if l.startswith("VmHWM")])
        for hijos in glob.glob(f"/proc/{pid}/task/*/children"):
            with open(hijos) as lista:
                pendientes += lista.read().split()
    return pico


def main():
    caso, datos, base, salida, veces = sys.argv[1:]
    filas = tuple(leer(datos))
    salida = os.path.abspath(salida)
    with tempfile.TemporaryDirectory() as perfil:
        tubo = f"bnbanco{os.getpid()}"
        oficina = subprocess.Popen(
            ["soffice", "--headless", "--norestore", "--nologo", f"--accept=pipe,name={tubo};urp;",
             f"-env:UserInstallation=file://{perfil}"],
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
        )  # fmt: skip
        try:
            escritorio = conectar(tubo, oficina)
            for _ in range(int(veces)):
                if caso == "anexar":
                    shutil.copyfile(base, salida)
                inicio = time.perf_counter()
                anadir(escritorio, caso, filas, salida)
                print(f"{time.perf_counter() - inicio:.6f}", flush=True)
            print(f"rss {pico_kib(oficina.pid)}")
            try:
                escritorio.terminate()
            except Exception:
                pass  # the bridge goes away with the office
            oficina.wait(60)
        finally:
            if oficina.poll() is None:
                oficina.terminate()
                oficina.wait(30)


main()
