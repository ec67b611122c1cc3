#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Downloads into a worksheet, without a spreadsheet application: every weighing a row, once, in
order; read back with a reader that is not the program's own."""

import datetime
import pathlib
import shutil

import banco
import linea
import xlrd

MUESTRAS = pathlib.Path(__file__).resolve().parent.parent / "destinations" / "muestras"
COLUMNAS = 8
FORMATO_FECHA = "dd/mm/yyyy hh:mm"


def abrir(ruta):
    return xlrd.open_workbook(str(ruta), formatting_info=True)


def celda(hoja, fila, columna):
    """Its type and value; rows and columns count from 0, and end nowhere."""
    if fila >= hoja.nrows or columna >= hoja.ncols:
        return (xlrd.XL_CELL_EMPTY, "")
    vista = hoja.cell(fila, columna)
    tipo = xlrd.XL_CELL_EMPTY if vista.ctype == xlrd.XL_CELL_BLANK else vista.ctype
    return (tipo, vista.value)


def fila(hoja, numero):
    return [celda(hoja, numero, columna) for columna in range(COLUMNAS)]


def esperada(datos, desde_1904=False):
    """The row that a weighing's data must give; worked out here from the data themselves."""

    def campo(donde):
        return datos[donde[0] : donde[0] + donde[1]].strip(b" ").decode("cp1252")

    fecha = datetime.datetime.strptime(campo(linea.FECHA), "%d/%m/%y %H:%M")
    origen = datetime.datetime(1904, 1, 1) if desde_1904 else datetime.datetime(1899, 12, 30)
    dias = (fecha - origen) / datetime.timedelta(days=1)
    matricula = campo(linea.MATRICULA[0])
    numeros = [float(campo(donde) or 0) for donde, _, _ in linea.ENTEROS]
    numeros += [float(campo(donde)) for donde, _ in linea.PESOS]
    texto = (xlrd.XL_CELL_TEXT, matricula) if matricula else (xlrd.XL_CELL_EMPTY, "")
    return [(xlrd.XL_CELL_DATE, dias), texto] + [(xlrd.XL_CELL_NUMBER, n) for n in numeros]


def redondeada(celdas):
    """Day counts to the millisecond: the two sides divide in another order."""
    return [(t, round(v, 8)) if t == xlrd.XL_CELL_DATE else (t, v) for t, v in celdas]


def contenido_de(hoja):
    """Everything in a sheet that a reader sees."""
    return (
        [[celda(hoja, f, c) for c in range(hoja.ncols)] for f in range(hoja.nrows)],
        hoja.merged_cells,
        {c: (i.width, i.hidden) for c, i in hoja.colinfo_map.items()},
        hoja.horizontal_page_breaks,
    )


def claves(un_banco, hoja="Pesadas"):
    """The settings of the worksheet, written by the program itself."""
    return {"Uso": "True", "Libro": un_banco.libro, "Hoja": hoja, "Motor": "interno"}


def comprobar_filas(prueba, esperadas):
    """These weighings, and no others, stand in the worksheet, from its first row on."""
    vista = abrir(prueba.banco.libro).sheet_by_name("Pesadas")
    prueba.assertEqual(vista.nrows, len(esperadas))
    for i, datos in enumerate(esperadas):
        prueba.assertEqual(redondeada(fila(vista, i)), redondeada(esperada(datos)), f"row {i + 1}")


class HojaDeCalculo(banco.PruebaConBanco):
    def descargar(self, hoja, pesadas, ultima, tandas=1):
        """Runs until the row ultima (from 1) of the sheet is filled, and is the last filled one."""
        # No repeats: on a machine that stalls they would be taken for answers to the next frame.
        self.banco.configurar(
            {"TimeOut": "3000;4"}, excel=claves(self.banco, hoja)
        )
        simulador = self.banco.simular("--pesadas", pesadas, "--tandas", tandas)
        self.banco.arrancar()

        def guardada():
            if not self.banco.libro.exists():
                return False
            vista = abrir(self.banco.libro).sheet_by_name(hoja)
            return celda(vista, ultima - 1, 0)[0] != xlrd.XL_CELL_EMPTY

        self.esperar(lambda: simulador.veces("terminada") >= tandas, 60, "the downloads")
        self.esperar(guardada, 20, f"row {ultima}")
        # The next download, of nothing, must not touch the workbook.
        self.esperar(lambda: simulador.veces("terminada") > tandas, 20, "the next download")
        reconocidas = self.banco.reconocidas()
        self.assertEqual(len(reconocidas), pesadas * tandas)
        self.assertEqual(banco.contenido(self.banco.texto), linea.lineas(reconocidas))
        return reconocidas

    def comparar(self, vista, primera, reconocidas, desde_1904=False):
        """The weighings stand from the row primera (from 1) on."""
        for i, datos in enumerate(reconocidas):
            with self.subTest(fila=primera + i):
                self.assertEqual(
                    redondeada(fila(vista, primera - 1 + i)),
                    redondeada(esperada(datos, desde_1904)),
                )

    def muestra(self, nombre):
        """A workbook of another program takes the place of the destination; its view before."""
        shutil.copy(MUESTRAS / f"{nombre}.xls", self.banco.libro)
        return abrir(self.banco.libro)

    def test_the_first_download_makes_the_workbook_and_the_second_goes_on_below(self):
        reconocidas = self.descargar("Pesadas", 30, 60, tandas=2)
        libro = abrir(self.banco.libro)
        self.assertEqual(libro.sheet_names(), ["Pesadas"])
        vista = libro.sheet_by_index(0)
        self.comparar(vista, 1, reconocidas)
        self.assertEqual(vista.nrows, 60)
        formato = libro.xf_list[vista.cell_xf_index(59, 0)].format_key
        self.assertEqual(libro.format_map[formato].format_str, FORMATO_FECHA)
        restos = {f.name for f in self.banco.carpeta.iterdir() if "Pesadas" in f.name}
        self.assertEqual(restos, {"Pesadas.xls", "Pesadas.txt"})

    def test_rows_are_added_to_a_workbook_and_its_other_sheets_stay(self):
        antes = self.muestra("s5_poi")
        usadas = antes.sheet_by_name("Log")
        libre = next(
            f for f in range(usadas.nrows + 1) if all(v == "" for _, v in fila(usadas, f))
        )
        reconocidas = self.descargar("Log", 20, libre + 20)
        despues = abrir(self.banco.libro)
        self.assertEqual(despues.sheet_names(), antes.sheet_names())
        for nombre in antes.sheet_names():
            if nombre != "Log":
                self.assertEqual(
                    contenido_de(despues.sheet_by_name(nombre)),
                    contenido_de(antes.sheet_by_name(nombre)),
                )
        vista = despues.sheet_by_name("Log")
        self.comparar(vista, libre + 1, reconocidas)
        for f in [f for f in range(usadas.nrows) if not libre <= f < libre + 20]:
            self.assertEqual(fila(vista, f), fila(usadas, f), f"row {f + 1}")

    def test_the_name_bnUltima_says_the_row_and_stays_as_it_is(self):
        antes = self.muestra("s3_lo_chart")
        self.assertEqual(antes.name_map["bnultima"][0].result.value, 25)
        reconocidas = self.descargar("Third", 10, 34)
        libro = abrir(self.banco.libro)
        vista = libro.sheet_by_name("Third")
        self.comparar(vista, 25, reconocidas)
        self.assertEqual(vista.nrows, 34)
        self.assertEqual(fila(vista, 0), fila(antes.sheet_by_name("Third"), 0))
        self.assertEqual(libro.name_map["bnultima"][0].result.value, 25)

    def test_days_are_counted_from_1904_in_a_workbook_that_does_so(self):
        self.assertEqual(self.muestra("s6_handmade").datemode, 1)
        reconocidas = self.descargar("Prázdný", 5, 29)
        self.comparar(
            abrir(self.banco.libro).sheet_by_name("Prázdný"), 25, reconocidas, desde_1904=True
        )

    def test_a_file_that_is_no_workbook_is_kept_beside_the_new_one(self):
        self.banco.libro.write_bytes(b"una nota de la oficina\r\n")
        reconocidas = self.descargar("Pesadas", 5, 5)
        self.comparar(abrir(self.banco.libro).sheet_by_index(0), 1, reconocidas)
        copias = list(self.banco.carpeta.glob("Pesadas.xls.*.bak"))
        self.assertEqual([banco.contenido(c) for c in copias], [b"una nota de la oficina\r\n"])


if __name__ == "__main__":
    banco.ejecutar()
