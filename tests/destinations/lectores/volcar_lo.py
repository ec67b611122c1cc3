#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""What LibreOffice sees in workbooks: one JSON object per file given, on one line each."""
import json
import os
import shutil
import subprocess
import sys
import tempfile
import time

import uno
from com.sun.star.beans import PropertyValue

SOFFICE = '/usr/lib/libreoffice/program/soffice.bin'
CON_CONTENIDO = 1 | 2 | 4 | 16  # numbers, dates, texts, formulas
PERFIL_NUEVO = (81, 79)         # how it ends when a fresh profile asks for a second start
LIMITE = 60


class Oficina:
    """A private instance, with a profile of its own."""

    def __init__(self):
        self.perfil = tempfile.mkdtemp(prefix='lo-')
        self.tubo = 'lo%d' % os.getpid()
        self.arrancar()
        local = uno.getComponentContext()
        buscador = local.ServiceManager.createInstanceWithContext(
            'com.sun.star.bridge.UnoUrlResolver', local)
        limite = time.monotonic() + LIMITE
        while True:
            try:
                contexto = buscador.resolve(
                    'uno:pipe,name=%s;urp;StarOffice.ComponentContext' % self.tubo)
                break
            except Exception:
                if time.monotonic() > limite:
                    raise
                if self.proceso.poll() in PERFIL_NUEVO:
                    self.arrancar()
                time.sleep(0.1)
        self.escritorio = contexto.ServiceManager.createInstanceWithContext(
            'com.sun.star.frame.Desktop', contexto)

    def arrancar(self):
        self.proceso = subprocess.Popen(
            [SOFFICE, '--headless', '--invisible', '--norestore', '--nologo', '--nodefault',
             '-env:UserInstallation=file://' + self.perfil,
             '--accept=pipe,name=%s;urp;' % self.tubo],
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

    def abrir(self, ruta):
        opciones = []
        for nombre, valor in (('Hidden', True), ('ReadOnly', True), ('FilterName', 'MS Excel 97')):
            opcion = PropertyValue()
            opcion.Name, opcion.Value = nombre, valor
            opciones.append(opcion)
        return self.escritorio.loadComponentFromURL(
            uno.systemPathToFileUrl(os.path.abspath(ruta)), '_blank', 0, tuple(opciones))

    def cerrar(self):
        try:
            self.escritorio.terminate()
            self.proceso.wait(20)
        except Exception:
            self.proceso.kill()
        shutil.rmtree(self.perfil, ignore_errors=True)


def comun(a, b):
    """Rows and columns two areas share."""
    return (range(max(a.StartRow, b.StartRow), min(a.EndRow, b.EndRow) + 1),
            range(max(a.StartColumn, b.StartColumn), min(a.EndColumn, b.EndColumn) + 1))


def formatos(documento, hoja, zonas):
    """Number format and alignment of each cell of some areas."""
    por_celda, claves = {}, documento.NumberFormats
    grupos = hoja.getUniqueCellFormatRanges()
    for i in range(grupos.Count):
        grupo = grupos.getByIndex(i)
        aspecto = [claves.getByKey(grupo.NumberFormat).FormatString, grupo.HoriJustify.value]
        for de_grupo in grupo.RangeAddresses:
            for zona in zonas:
                filas, columnas = comun(de_grupo, zona)
                por_celda.update(((f, c), aspecto) for f in filas for c in columnas)
    return por_celda


def volcar_hoja(documento, hoja, celdas):
    zonas = hoja.queryContentCells(CON_CONTENIDO).RangeAddresses
    aspectos = formatos(documento, hoja, zonas)
    for zona in zonas:
        rango = hoja.getCellRangeByPosition(zona.StartColumn, zona.StartRow,
                                            zona.EndColumn, zona.EndRow)
        filas = zip(rango.getDataArray(), rango.getFormulaArray())
        for fila, (datos, formulas) in enumerate(filas, zona.StartRow):
            for columna, (dato, formula) in enumerate(zip(datos, formulas), zona.StartColumn):
                if isinstance(dato, float):
                    dato = '%.15g' % dato
                if not formula.startswith('='):
                    formula = ''
                celdas['%s\t%d\t%d' % (hoja.Name, fila, columna)] = [
                    dato or '', formula, aspectos.get((fila, columna))]


def volcar(oficina, ruta):
    documento = oficina.abrir(ruta)
    if documento is None:
        return {'error': 'not loaded'}
    celdas, aspecto = {}, {}
    hojas = [documento.Sheets.getByIndex(i) for i in range(documento.Sheets.Count)]
    for hoja in hojas:
        volcar_hoja(documento, hoja, celdas)
        aspecto[hoja.Name] = [hoja.Charts.Count, hoja.DrawPage.Count, hoja.Annotations.Count,
                              [hoja.Columns.getByIndex(i).Width for i in range(20)]]
    nombres = sorted([n, documento.NamedRanges.getByName(n).Content]
                     for n in documento.NamedRanges.ElementNames)
    documento.close(True)
    return {'celdas': celdas, 'aspecto': aspecto, 'nombres': nombres}


oficina = Oficina()
try:
    for ruta in sys.argv[1:]:
        print(json.dumps(volcar(oficina, ruta)), flush=True)
finally:
    oficina.cerrar()
