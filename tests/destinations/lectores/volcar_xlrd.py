#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""What xlrd sees in workbooks: one JSON object per file given, on one line each."""
import json
import sys

import xlrd

FECHA = '%.15g'


def valor(celda):
    if celda.ctype == xlrd.XL_CELL_TEXT:
        return celda.value
    if celda.ctype in (xlrd.XL_CELL_NUMBER, xlrd.XL_CELL_DATE):
        return FECHA % celda.value
    if celda.ctype == xlrd.XL_CELL_BOOLEAN:
        return 'TRUE' if celda.value else 'FALSE'
    if celda.ctype == xlrd.XL_CELL_ERROR:
        return xlrd.error_text_from_code.get(celda.value, '?')
    return ''


def volcar(ruta):
    libro = xlrd.open_workbook(ruta, formatting_info=True, ragged_rows=True,
                               logfile=sys.stderr)
    celdas, aspecto = {}, {}
    for hoja in libro.sheets():
        for fila in range(hoja.nrows):
            for columna in range(hoja.row_len(fila)):
                celda = hoja.cell(fila, columna)
                clave = '%s\t%d\t%d' % (hoja.name, fila, columna)
                xf = libro.xf_list[celda.xf_index]
                formato = libro.format_map[xf.format_key].format_str
                if valor(celda) != '':
                    celdas[clave] = [valor(celda), formato, xf.alignment.hor_align, xf.font_index]
        aspecto[hoja.name] = {
            'combinadas': sorted(map(list, hoja.merged_cells)),
            'anchos': {str(c): [i.width, i.hidden, i.xf_index] for c, i in hoja.colinfo_map.items()},
            'saltos': list(map(list, hoja.horizontal_page_breaks)),
            'altos': {str(r): i.height for r, i in hoja.rowinfo_map.items() if i.height_mismatch}}
    nombres = sorted([n.scope, n.name, n.result.text if n.result is not None else n.formula_text]
                     for n in libro.name_obj_list)
    return {'celdas': celdas, 'aspecto': aspecto, 'nombres': nombres}


for ruta in sys.argv[1:]:
    try:
        print(json.dumps(volcar(ruta)))
    except Exception as error:  # whatever a reader trips over is its answer to the file
        print(json.dumps({'error': '%s: %s' % (type(error).__name__, error)}))
