# SPDX-License-Identifier: MIT
"""The line of the text file that a weighing's data must give, in the default layout; worked out
here anew, from the layout's table, so that the program is not compared with itself."""

import decimal
import re

# Field of the data (start, width), column and width in the line.
MATRICULA = ((0, 8), (18, 8))
ENTEROS = [  # with the digits of their picture
    ((9, 7), (27, 7), 7),
    ((17, 8), (35, 8), 8),
    ((26, 8), (44, 8), 8),
    ((35, 8), (53, 8), 8),
]
PESOS = [((44, 7), (62, 7)), ((52, 7), (70, 7))]
FECHA = (60, 14)
ANCHO_LINEA = 76


def _campo(datos, donde):
    return datos[donde[0] : donde[0] + donde[1]].strip(b" ")


def _peso(texto):
    """A weight without decimals, halves away from zero."""
    numero = decimal.Decimal(texto.decode("ascii"))
    entero = numero.quantize(decimal.Decimal(1), rounding=decimal.ROUND_HALF_UP)
    return str(int(entero)).encode("ascii")


def _fecha(texto):
    dia, mes, corto, hora = re.fullmatch(
        rb"(\d\d)/(\d\d)/(\d\d) (\d\d:\d\d)", texto
    ).groups()
    siglo = b"20" if int(corto) < 30 else b"19"
    return dia + b"/" + mes + b"/" + siglo + corto + b" " + hora


def linea(datos, fecha=None):
    """The line, its end included; the date of the short form has to be given."""
    texto = bytearray(b" " * ANCHO_LINEA)

    def poner(columna, ancho, valor, derecha):
        assert len(valor) <= ancho, (datos, valor)
        valor = valor.rjust(ancho) if derecha else valor.ljust(ancho)
        texto[columna - 1 : columna - 1 + ancho] = valor

    poner(1, 16, fecha or _fecha(datos[FECHA[0] : sum(FECHA)]), False)
    poner(*MATRICULA[1], _campo(datos, MATRICULA[0]), False)
    for donde, (columna, ancho), cifras in ENTEROS:
        poner(columna, ancho, (_campo(datos, donde) or b"0").lstrip(b"0").rjust(cifras, b"0"), True)
    for donde, (columna, ancho) in PESOS:
        poner(columna, ancho, _peso(_campo(datos, donde)), True)
    return bytes(texto) + b"\r\n"


def lineas(reconocidas):
    """The whole text file."""
    return b"".join(linea(datos) for datos in reconocidas)


def sin_albaran(datos):
    """Whether a weighing has no number of its own. Sent again because its acknowledge was not heard,
    such a one cannot be told from another just like it, and is kept twice rather than lost."""
    return not _campo(datos, ENTEROS[0][0])


def repeticiones_posibles(reconocidas, escritas):
    """The acknowledged weighings, those without a number repeated as often as they stand, one behind
    the other, in what was written."""
    esperadas = []
    for datos in reconocidas:
        esperadas.append(datos)
        while sin_albaran(datos) and escritas[len(esperadas) : len(esperadas) + 1] == [linea(datos)]:
            esperadas.append(datos)
    return esperadas
