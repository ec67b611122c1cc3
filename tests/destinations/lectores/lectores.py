# SPDX-License-Identifier: MIT
"""The strict linter and the independent readers of workbooks, each run as a program of its own.

A reader's view of a workbook is a dictionary: 'celdas', from sheet, row and column (from 0, joined
by tabs) to a list that starts with the cell's text; 'nombres', the defined names; 'aspecto', where
the reader tells it; or 'error' alone, when it cannot read the workbook.
"""
import json
import os
import shutil
import subprocess
import sys
import tempfile

AQUI = os.path.dirname(os.path.abspath(__file__))
PYTHON = '/usr/bin/python3'
JARS = ['/usr/share/java/%s.jar' % jar for jar in (
    'poi', 'commons-collections4', 'commons-codec', 'commons-math3', 'commons-compress')]
SOFFICE = '/usr/lib/libreoffice/program/soffice.bin'


def ejecutar(*orden, **otros):
    return subprocess.run(orden, stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=300, **otros)


def tiene(modulo):
    return ejecutar(PYTHON, '-c', 'import ' + modulo).returncode == 0


def examinar(rutas):
    """The linter's run: it ends with 0 when no workbook has an error."""
    return ejecutar(sys.executable, os.path.join(AQUI, 'xlsdump.py'), '-q', *rutas)


def vistas_en_json(salida):
    if salida.returncode:
        raise AssertionError(salida.stderr.decode('utf-8'))
    return [json.loads(linea) for linea in salida.stdout.splitlines()]


def ver_con_xlrd(rutas):
    return vistas_en_json(ejecutar(PYTHON, os.path.join(AQUI, 'volcar_xlrd.py'), *rutas))


def ver_con_libreoffice(rutas):
    return vistas_en_json(ejecutar(PYTHON, os.path.join(AQUI, 'volcar_lo.py'), *rutas))


def ver_con_poi(rutas):
    with tempfile.TemporaryDirectory(prefix='poi-') as clases:
        javac = ejecutar('javac', '-cp', ':'.join(JARS), '-d', clases, os.path.join(AQUI, 'VolcarPoi.java'))
        if javac.returncode:
            raise AssertionError(javac.stderr.decode('utf-8'))
        salida = ejecutar('java', '-XX:TieredStopAtLevel=1', '-cp', ':'.join(JARS + [clases]),
                          'VolcarPoi', *rutas)
    vistas = []
    for linea in salida.stdout.decode('utf-8').splitlines():
        partes = linea.split('\t')
        if partes[0] == 'FICHERO':
            vistas.append({'celdas': {}, 'nombres': [], 'aspecto': []})
        elif partes[0] == 'CELDA':
            vistas[-1]['celdas']['\t'.join(partes[1:4])] = partes[4:]
        elif partes[0] == 'NOMBRE':
            vistas[-1]['nombres'].append(partes[1:])
        elif partes[0] == 'COMBINADA':
            vistas[-1]['aspecto'].append(partes[1:])
        else:
            vistas[-1]['error'] = linea
    return vistas


class Lector:
    def __init__(self, paquetes, instalado, ver):
        self.paquetes = paquetes
        self.instalado = instalado
        self._ver = ver

    def ver(self, rutas):
        """One view for each workbook, in their order."""
        vistas = self._ver(rutas)
        if len(vistas) != len(rutas):
            raise AssertionError('%d views of %d workbooks' % (len(vistas), len(rutas)))
        return vistas


XLRD = Lector('python3-xlrd', lambda: tiene('xlrd'), ver_con_xlrd)
POI = Lector('libapache-poi-java', lambda: all(map(os.path.exists, JARS)) and shutil.which('javac'),
             ver_con_poi)
LIBREOFFICE = Lector('libreoffice-calc-nogui and python3-uno',
                     lambda: os.path.exists(SOFFICE) and tiene('uno'), ver_con_libreoffice)
