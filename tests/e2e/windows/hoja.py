#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""The Windows program under Wine writes worksheets: through Automation, with a stand-in for Excel
that is a process of its own, and without it, through the embedded engine. What was saved is read by
readers that are not the program's own.

WINEPREFIX and DISPLAY are the caller's, with Wine running already and a window manager."""

import pathlib
import re
import sys

AQUI = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(AQUI.parent))
sys.path.insert(0, str(AQUI.parent.parent / "destinations" / "lectores"))

import banco  # noqa: E402
import hoja_de_calculo  # noqa: E402
import lectores  # noqa: E402
import linea  # noqa: E402
import programa  # noqa: E402
from programa import de_wine  # noqa: E402

SUSTITUTO = "tests/destinations/sustituto/bn_sustituto_proceso.exe"
HOJA = "Báscula ñ"


class HojaWindows(programa.PruebaConWindows):
    def preparar(self, motor="auto", ordenes="", instalado=True):
        """The settings of the worksheet, and a spreadsheet application or none."""
        self.sustituto = self.banco.construccion / SUSTITUTO
        self.diario = self.banco.carpeta / "diario"
        self.assertTrue(
            self.banco.wine(str(self.sustituto), "/registrar" if instalado else "/borrar")
        )
        self.addCleanup(self.banco.wine, str(self.sustituto), "/borrar")
        self.banco.variables = {
            "BN_SUSTITUTO_DIARIO": de_wine(self.diario),
            "BN_SUSTITUTO_ORDENES": ordenes,
        }
        self.banco.libro = self.banco.carpeta / "Pesadas de la báscula ñ.xls"
        self.banco.configurar_com(
            {
                "Uso": "True",
                "Libro": de_wine(self.banco.libro),
                "Hoja": HOJA,
                "Motor": motor,
            }
        )

    def descargar(self, pesadas, tandas=1):
        """Runs until every weighing has been acknowledged."""
        self.banco.simular("--pesadas", pesadas, "--tandas", tandas, "--salir")
        en_marcha = self.banco.arrancar()
        self.visto = False

        def llegadas():
            self.visto = self.visto or bool(self.procesos_de_excel())
            return len(self.banco.reconocidas()) == pesadas * tandas

        banco.esperar(llegadas, 120, "the weighings")
        return en_marcha

    def esperar_sin_excel(self):
        banco.esperar(lambda: not self.procesos_de_excel(), 20, "the end of the application")

    @staticmethod
    def procesos_de_excel():
        return programa.procesos_de("bn_sustituto_proceso")

    def llamadas(self):
        """What the application was asked, without the questions for identifiers."""
        texto = banco.contenido(self.diario).decode("utf-8")
        return [una for una in texto.splitlines() if not una.startswith("? ")]

    def comprobar_libro(self, reconocidas):
        """Each weighing a row, once, in order: for every reader."""
        ruta = str(self.banco.libro)
        self.assertEqual(
            banco.contenido(self.banco.texto), linea.lineas(reconocidas), "the text file"
        )
        libro = hoja_de_calculo.abrir(ruta)
        self.assertEqual(libro.sheet_names(), [HOJA])
        vista = libro.sheet_by_index(0)
        self.assertEqual(vista.nrows, len(reconocidas))
        for i, datos in enumerate(reconocidas):
            self.assertEqual(
                hoja_de_calculo.redondeada(hoja_de_calculo.fila(vista, i)),
                hoja_de_calculo.redondeada(hoja_de_calculo.esperada(datos)),
                f"row {i + 1}",
            )
        self.assertEqual(lectores.examinar([ruta]).returncode, 0)
        esperadas = self.esperadas(reconocidas)
        for lector in (lectores.POI, lectores.LIBREOFFICE):
            celdas = lector.ver([ruta])[0]["celdas"]
            vistas = {c: self.numero(v[0]) for c, v in celdas.items() if v[0] != ""}
            self.assertEqual(vistas, esperadas, lector.paquetes)

    def esperadas(self, reconocidas):
        celdas = {}
        for f, datos in enumerate(reconocidas):
            for c, (_, valor) in enumerate(hoja_de_calculo.esperada(datos)):
                if valor != "":
                    celdas[f"{HOJA}\t{f}\t{c}"] = self.numero(valor)
        return celdas

    @staticmethod
    def numero(valor):
        try:
            return f"{float(valor):.10g}"
        except ValueError:
            return valor

    def test_weighings_become_rows_through_automation_and_no_process_is_left(self):
        self.preparar()
        en_marcha = self.descargar(60, tandas=2)
        banco.esperar(lambda: self.banco.lineas_texto() >= 120, 30, "the text file")
        self.esperar_sin_excel()
        self.assertTrue(self.visto, "a process of the application's own was never seen")
        self.comprobar_libro(self.banco.reconocidas())
        llamadas = self.llamadas()
        guardados = [una for una in llamadas if una.startswith("Workbook.SaveAs")]
        self.assertEqual(len(guardados), 2)
        destino = re.escape(de_wine(self.banco.libro))
        # The first one makes the file, the second one keeps the format that it has.
        for guardado, formato in zip(guardados, ("I4 56", "")):
            self.assertRegex(guardado, rf'SaveAs\(BSTR "{destino}", {formato}, , , , , I4 1\)$')
        # One to see whether there is one, at start, and one for each download.
        self.assertEqual(llamadas.count("Application.Quit"), 3)
        self.assertEqual(llamadas.count("Application: fin"), 3)
        self.cerrar(en_marcha)
        self.assertEqual(self.procesos_de_excel(), [])

    def test_a_busy_application_delays_the_rows_and_loses_none(self):
        self.preparar(
            ordenes="ocupado=Workbooks.Open,5 ocupado=Range.FormulaR1C1=,3 ocupado=Workbook.SaveAs,4"
        )
        en_marcha = self.descargar(20)
        banco.esperar(self.banco.libro.exists, 60, "the workbook")
        self.esperar_sin_excel()
        self.comprobar_libro(self.banco.reconocidas())
        self.cerrar(en_marcha)

    def test_a_refused_save_keeps_the_rows_waiting_until_it_is_granted(self):
        self.preparar(motor="excel", ordenes="falla=Workbook.SaveAs")
        primero = self.descargar(20)
        # The store is put aside, with its note, when the next download is about to empty it.
        banco.esperar(self.banco.sobras, 60, "the weighings put aside")
        self.assertEqual(
            banco.contenido(self.banco.texto), linea.lineas(self.banco.reconocidas())
        )
        self.assertFalse(self.banco.libro.exists())
        self.assertEqual(len(self.banco.ventanas()), 1, "nobody is asked anything")
        self.esperar_sin_excel()
        self.cerrar(primero)
        self.banco.variables["BN_SUSTITUTO_ORDENES"] = ""
        segundo = self.banco.arrancar()
        banco.esperar(self.banco.libro.exists, 60, "the workbook")
        self.esperar_sin_excel()
        self.comprobar_libro(self.banco.reconocidas())
        banco.esperar(lambda: not self.banco.sobras(), 20, "the end of what was put aside")
        self.cerrar(segundo)

    def test_without_the_application_the_embedded_engine_writes_the_rows(self):
        self.preparar(instalado=False)
        en_marcha = self.descargar(20)
        banco.esperar(self.banco.libro.exists, 30, "the workbook")
        banco.esperar(lambda: self.banco.lineas_texto() >= 20, 30, "the text file")
        self.comprobar_libro(self.banco.reconocidas())
        self.cerrar(en_marcha)

    def test_the_embedded_engine_can_be_asked_for_beside_the_application(self):
        self.preparar(motor="interno")
        en_marcha = self.descargar(20)
        banco.esperar(self.banco.libro.exists, 30, "the workbook")
        banco.esperar(lambda: self.banco.lineas_texto() >= 20, 30, "the text file")
        self.comprobar_libro(self.banco.reconocidas())
        self.assertEqual(self.llamadas(), [])
        self.cerrar(en_marcha)


if __name__ == "__main__":
    programa.ejecutar()
