#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""A plain downloader: the same exchange as the program, as one would write it with python3-serial.

The benchmarks compare the program with it. Each weighing is flushed to the disk before it is
acknowledged, refused frames are asked for again, and the text lines are written at the end.
"""

import argparse
import os
import sys
import time

import serial

STX, ETX, ACK, NAK = 2, 3, b"\x06", b"\x15"
PARIDADES = {"N": serial.PARITY_NONE, "E": serial.PARITY_EVEN, "O": serial.PARITY_ODD}

# Start, width and digits (None: text) of each field of the text line, in the order of the record.
CAMPOS = [(0, 8, None), (9, 7, 7), (17, 8, 8), (26, 8, 8), (35, 8, 8), (44, 7, 1), (52, 7, 1)]
COLUMNAS = [(17, 8), (26, 7), (34, 8), (43, 8), (52, 8), (61, 7), (69, 7)]


class Fallo(Exception):
    """The exchange ended without the counter record."""


def datos_de_trama(trama):
    """The data of a good frame, None when it has to be refused."""
    if len(trama) < 5 or trama[0] != STX or trama[-4] != ETX or trama[-2:] != b"\n\r":
        return None
    datos, control = trama[1:-4], 0
    for byte in datos:
        control ^= byte
    if control != trama[-3]:
        return None
    if len(datos) in (4, 5) and datos.isdigit():
        return datos
    if len(datos) not in (59, 74):
        return None
    try:
        for desde, ancho, cifras in CAMPOS:
            campo = datos[desde : desde + ancho].decode("cp1252", "replace").strip()
            if cifras == 1 or (cifras is not None and campo):
                float(campo)
        if len(datos) == 74:
            time.strptime(datos[60:74].decode("ascii"), "%d/%m/%y %H:%M")
    except ValueError:
        return None
    return datos


def linea_de_texto(datos):
    """The line of the text file, in the default layout."""
    if len(datos) == 74:
        fecha = time.strptime(datos[60:74].decode("ascii"), "%d/%m/%y %H:%M")
    else:
        fecha = time.localtime()
    linea = time.strftime("%d/%m/%Y %H:%M", fecha)
    for (desde, ancho, cifras), (columna, largo) in zip(CAMPOS, COLUMNAS):
        campo = datos[desde : desde + ancho].decode("cp1252", "replace").strip()
        if cifras is None:
            campo = campo.ljust(largo)
        else:
            campo = f"{float(campo or 0):0{cifras}.0f}".rjust(largo)
        linea = linea.ljust(columna) + campo
    return linea.encode("cp1252", "replace") + b"\r\n"


class Descargador:
    """One download. Attempts are spent and given back as the program does."""

    def __init__(self, puerto, almacen, intentos, peticion):
        self.puerto = puerto
        self.almacen = almacen
        self.maximo = intentos
        self.peticion = peticion
        self.rechazadas = 0
        self.pesadas = []

    def ejecutar(self):
        """Returns the counter the indicator sends; raises Fallo."""
        salida, intentos = self.peticion, 1
        self.puerto.reset_input_buffer()
        self.puerto.write(salida)
        while True:
            trama = self.puerto.read_until(b"\r")
            if not trama.endswith(b"\r"):
                if intentos >= self.maximo:
                    raise Fallo("el indicador no contesta")
                intentos += 1
                self.puerto.write(salida)
                self.puerto.reset_input_buffer()
                continue
            datos = datos_de_trama(trama)
            if datos is None:
                self.rechazadas += 1
                if salida != NAK:
                    intentos = 0
                elif intentos >= self.maximo:
                    raise Fallo("tramas irreconocibles")
                intentos += 1
                salida = NAK
            elif len(datos) <= 5:
                self.puerto.write(ACK)
                return int(datos)
            else:
                self.guardar(datos)
                salida = ACK
            self.puerto.write(salida)

    def guardar(self, datos):
        """On the disk before the indicator hears the acknowledge."""
        with open(self.almacen, "ab") as fichero:
            fichero.write(datos + b"\r\n")
            fichero.flush()
            os.fsync(fichero.fileno())
        self.pesadas.append(datos)


def abrir(dispositivo, parametros, espera):
    """The serial port, set up as the text says."""
    baudios, paridad, bits, parada = parametros.split(",")
    return serial.Serial(
        dispositivo,
        int(baudios),
        parity=PARIDADES[paridad],
        bytesize=int(bits),
        stopbits=int(parada),
        timeout=espera / 1000,
    )


def main():
    analizador = argparse.ArgumentParser(description=__doc__)
    analizador.add_argument("dispositivo")
    analizador.add_argument("--parametros", default="9600,N,8,1")
    analizador.add_argument("--almacen", default="bnGuardo.txt", help="the frame store")
    analizador.add_argument("--salida", default="Pesadas.txt", help="the text file")
    analizador.add_argument("--espera", type=int, default=600, help="time-out, ms")
    analizador.add_argument("--intentos", type=int, default=4)
    analizador.add_argument("--peticion", type=int, default=6, help="request character, its code")
    argumentos = analizador.parse_args()

    open(argumentos.almacen, "wb").close()
    inicio = time.monotonic()
    with abrir(argumentos.dispositivo, argumentos.parametros, argumentos.espera) as puerto:
        descarga = Descargador(
            puerto, argumentos.almacen, argumentos.intentos, bytes([argumentos.peticion])
        )
        fallo = None
        try:
            contador = descarga.ejecutar()
        except Fallo as error:
            contador, fallo = -1, error
    recibido = time.monotonic()
    if descarga.pesadas:
        with open(argumentos.salida, "ab") as texto:
            texto.writelines(linea_de_texto(datos) for datos in descarga.pesadas)
    print(
        f"pesadas={len(descarga.pesadas)} contador={contador} rechazadas={descarga.rechazadas}"
        f" intercambio={recibido - inicio:.3f} total={time.monotonic() - inicio:.3f}"
    )
    if fallo:
        print(f"descargador_python: {fallo}", file=sys.stderr)
    return 1 if fallo else 0


if __name__ == "__main__":
    sys.exit(main())
