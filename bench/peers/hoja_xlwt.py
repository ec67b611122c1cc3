#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""The same weighings into a new workbook, with xlwt. Arguments: nuevo DATOS - LIBRO VECES."""

import sys
import time

import xlwt


def leer(ruta):
    with open(ruta, encoding="utf-8") as fichero:
        for linea in fichero:
            c = linea.rstrip("\n").split("\t")
            yield (float(c[0]), c[1], *map(int, c[2:6]), float(c[6]), float(c[7]))


def nuevo(filas, salida):
    libro = xlwt.Workbook(encoding="utf-8")
    hoja = libro.add_sheet("Pesadas")
    fecha = xlwt.easyxf(num_format_str="dd/mm/yyyy hh:mm")
    for numero, campos in enumerate(filas):
        hoja.write(numero, 0, campos[0], fecha)
        for columna in range(1, 8):
            hoja.write(numero, columna, campos[columna])
    libro.save(salida)


def main():
    _, datos, _, salida, veces = sys.argv[1:]
    filas = list(leer(datos))
    for _ in range(int(veces)):
        inicio = time.perf_counter()
        nuevo(filas, salida)
        print(f"{time.perf_counter() - inicio:.6f}")


main()
