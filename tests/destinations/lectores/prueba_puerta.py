#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""The gate: what the embedded engine saves is right only when a strict linter and independent
readers agree. Each reader compares the edited workbook with its own view of the original.

    prueba_puerta.py EDITOR          EDITOR is the program editor_xls
A reader that is not installed is skipped, or is an error when BN_EXIGIR_LECTORES is set.
"""
import glob
import os
import shutil
import sys
import tempfile
import unittest

import lectores
from lectores import ejecutar

MUESTRAS = os.path.join(lectores.AQUI, '..', 'muestras')
EDITOR = None
RECHAZADAS = {'s4c_biff5_book', 's5b_encrypted'}
DESDE_1904 = {'s6_handmade'}  # counts its days from 1904
DIAS_HASTA_1904 = 1462


def numero(texto):
    """One spelling for a number; LibreOffice shows a logical value as the number it keeps."""
    texto = {'TRUE': '1', 'FALSE': '0'}.get(texto, texto)
    try:
        return '%.12g' % float(texto)
    except ValueError:
        return texto


def leer_esperadas(salida, dias=0):
    """Cells the editor says it wrote: sheet, row, column to text; dates, in column 0, less days."""
    celdas = {}
    for linea in salida.decode('utf-8').splitlines():
        hoja, fila, columna, valor = linea.split('\t')
        if columna == '0':
            valor = '%.15g' % (float(valor) - dias)
        celdas['%s\t%s\t%s' % (hoja, fila, columna)] = valor
    return celdas


class Puerta(unittest.TestCase):
    """Makes all the workbooks once; every reader then looks at all of them."""
    maxDiff = 4000

    @classmethod
    def setUpClass(cls):
        cls.carpeta = tempfile.mkdtemp(prefix='puerta-')
        cls.casos = {}  # name: (original, untouched copy, edited copy, cells added)
        for original in sorted(glob.glob(os.path.join(MUESTRAS, '*.xls'))):
            nombre = os.path.splitext(os.path.basename(original))[0]
            copia = os.path.join(cls.carpeta, nombre + '.copia.xls')
            editada = os.path.join(cls.carpeta, nombre + '.editada.xls')
            if nombre in RECHAZADAS:
                continue
            abrir = ejecutar(EDITOR, 'abrir', original, copia)
            anadir = ejecutar(EDITOR, 'anadir', original, editada)
            if abrir.returncode or anadir.returncode:
                raise AssertionError(nombre + ': ' + (abrir.stderr + anadir.stderr).decode('utf-8'))
            dias = DIAS_HASTA_1904 if nombre in DESDE_1904 else 0
            cls.casos[nombre] = (original, copia, editada, leer_esperadas(anadir.stdout, dias))
        cls.nuevo = os.path.join(cls.carpeta, 'nuevo.xls')
        cls.esperadas_nuevo = leer_esperadas(ejecutar(EDITOR, 'nuevo', cls.nuevo).stdout)

    @classmethod
    def tearDownClass(cls):
        shutil.rmtree(cls.carpeta)

    def ver_con(self, lector):
        """What an independent reader sees, one view for each workbook."""
        if not lector.instalado():
            if os.environ.get('BN_EXIGIR_LECTORES'):
                self.fail(lector.paquetes + ': not installed')
            self.skipTest(lector.paquetes + ': not installed')
        return lector.ver(self.rutas())

    def rutas(self):
        return [ruta for caso in self.casos.values() for ruta in caso[:3]] + [self.nuevo]

    def comparar(self, nombre, vistas, valor, legible_al_menos):
        """vistas: what the reader saw, in the order of rutas(); valor: a seen cell's text."""
        vistas = dict(zip(self.rutas(), vistas))
        legibles = 0
        for caso, (original, copia, editada, esperadas) in self.casos.items():
            if 'error' in vistas[original]:
                continue
            legibles += 1
            with self.subTest(lector=nombre, libro=caso):
                self.assertEqual(vistas[copia], vistas[original])
                self.comparar_editada(vistas[original], vistas[editada], esperadas, valor)
        self.assertGreaterEqual(legibles, legible_al_menos)
        self.assertEqual(self.textos(vistas[self.nuevo]['celdas'], valor),
                         {clave: numero(v) for clave, v in self.esperadas_nuevo.items()})

    @staticmethod
    def textos(celdas, valor):
        return {clave: numero(valor(celda)) for clave, celda in celdas.items()}

    def comparar_editada(self, original, editada, esperadas, valor):
        nuevas = {c: v for c, v in editada['celdas'].items() if c in esperadas}
        viejas = {c: v for c, v in editada['celdas'].items() if c not in esperadas}
        self.assertEqual(viejas, {c: v for c, v in original['celdas'].items() if c not in esperadas})
        vistas = self.textos(nuevas, valor)
        self.assertEqual(vistas, {c: numero(v) for c, v in esperadas.items()})
        self.assertEqual(editada['nombres'], original['nombres'])
        self.assertEqual(editada.get('aspecto'), original.get('aspecto'))

    def test_linter_finds_no_error(self):
        salidas = [ruta for ruta in self.rutas() if ruta.startswith(self.carpeta)]
        salida = lectores.examinar(salidas)
        self.assertEqual(salida.returncode, 0, salida.stdout.decode('utf-8'))
        self.assertEqual(salida.stdout.count(b': OK ('), len(salidas))

    def test_linter_finds_no_warning_in_a_new_workbook(self):
        self.assertIn(b'(0 errors, 0 warnings)', lectores.examinar([self.nuevo]).stdout)

    def test_older_and_encrypted_workbooks_are_refused(self):
        for nombre in RECHAZADAS:
            salida = ejecutar(EDITOR, 'leer', os.path.join(MUESTRAS, nombre + '.xls'))
            self.assertEqual(salida.returncode, 3, nombre)

    def test_xlrd_agrees(self):
        self.comparar('xlrd', self.ver_con(lectores.XLRD), lambda celda: celda[0], 6)

    def test_poi_agrees(self):
        self.comparar('Apache POI', self.ver_con(lectores.POI), lambda celda: celda[0], 5)

    def test_libreoffice_agrees(self):
        self.comparar('LibreOffice', self.ver_con(lectores.LIBREOFFICE), lambda celda: celda[0], 8)


if __name__ == '__main__':
    EDITOR = sys.argv.pop(1)
    unittest.main()
