#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""The whole window by keyboard and mouse, on a desktop with a notification area; after each thing
done the settings file must be, byte for byte, what that has made of it."""

import banco
import escritorio
import hoja_de_calculo
import linea

PRINCIPAL = "^bnDX5$"  # the message boxes too
COMUNICACION = "^Comunicaci"
EXCEL = "^Guardar pesadas en Hoja"
TEXTO = "^Guardar pesadas en Fichero"

PESADAS = 12


class VentanaReal(banco.PruebaConBanco):
    def setUp(self):
        super().setUp()
        self.escritorio = escritorio.Escritorio(self.banco)
        self.ini = self.banco.programa / "bnDX5.ini"
        self.claves = {
            "General": {
                "Canal": "1",
                "Param": "19200,N,8,1",
                "Caracteres": "2;3;84;6",
                "TimeOut": "300;4",
                "Autom": "0;True",
                "Checksum": "0",
            },
            "Excel": {
                "Uso": "True",
                "Libro": self.banco.libro,
                "Hoja": "Pesadas",
                "Columnas": "1;2;3;4;5;6;7;8",
                "Motor": "interno",
            },
            "Texto": {
                "Uso": "True",
                "Destino": self.banco.texto,
                "Columnas": "1,16;18,8;27,7;35,8;44,8;53,8;62,7;70,7",
                "Formatos": "dd/mm/yyyy hh:nn;;0000000;00000000;00000000;00000000;######0;######0",
            },
            "Puertos": {"1": self.banco.puerto},
        }
        self.ini.write_bytes(self.esperado())

    def esperado(self):
        """The settings file that there should be."""
        lineas = []
        for seccion, claves in self.claves.items():
            lineas.append(f"[{seccion}]")
            lineas += [f"{clave}={valor}" for clave, valor in claves.items()]
        return "".join(f"{texto}\r\n" for texto in lineas).encode("utf-8")

    def comprobar_ini(self):
        """The dialog has gone a moment before its settings are in the file."""
        try:
            self.esperar(lambda: banco.contenido(self.ini) == self.esperado(), 10, "the settings")
        except AssertionError:
            self.assertEqual(
                banco.contenido(self.ini).decode("utf-8"), self.esperado().decode("utf-8")
            )

    def acepta(self, seccion, clave, valor):
        """What has just been accepted has changed this key, and nothing else."""
        self.assertEqual(self.escritorio.delante(PRINCIPAL), self.principal)
        self.claves[seccion][clave] = valor
        self.comprobar_ini()

    def arrancar_oculta(self):
        programa = self.banco.arrancar()
        self.esperar(self.escritorio.icono, 20, "the icon in the notification area")
        self.assertEqual(self.escritorio.visibles(PRINCIPAL), [])
        return programa

    def mostrar(self):
        """A second start shows the window of the first."""
        self.assertEqual(self.banco.acabado(self.banco.arrancar()), 0)
        self.principal = self.escritorio.delante(PRINCIPAL)

    def ocultar(self):
        self.assertEqual(self.escritorio.delante(PRINCIPAL), self.principal)
        self.escritorio.teclear("alt+o")
        self.escritorio.esperar_sin(self.principal, PRINCIPAL)
        return self.esperar(self.escritorio.icono, 20, "the icon of the hidden window")

    def abrir(self, tecla, dialogo):
        self.escritorio.delante(PRINCIPAL)
        self.escritorio.teclear(tecla)
        return self.escritorio.delante(dialogo)

    def cerrar_por_el_menu(self, programa):
        icono = self.escritorio.icono()
        self.escritorio.pulsar(icono)
        self.esperar(lambda: self.escritorio.menu(icono), 20, "the icon's menu")
        self.escritorio.insistir(
            lambda: self.escritorio.teclear("c"),
            lambda: programa.poll() is not None,
            "the end of the program",
        )
        self.assertEqual(self.banco.acabado(programa), 0)
        self.assertEqual(escritorio.procesos_de(self.banco.programa / "bnDX5"), [])

    def test_a_minimised_start_is_shown_by_a_second_one_and_comes_and_goes_with_the_icon(self):
        programa = self.arrancar_oculta()
        self.mostrar()
        self.comprobar_ini()
        self.assertEqual(len(escritorio.procesos_de(self.banco.programa / "bnDX5")), 1)

        icono = self.ocultar()
        self.escritorio.pulsar(icono, veces=2)
        self.assertEqual(self.escritorio.delante(PRINCIPAL), self.principal)
        self.comprobar_ini()

        self.ocultar()
        self.cerrar_por_el_menu(programa)
        self.comprobar_ini()

    def test_the_communication_is_changed_when_accepted_and_only_then(self):
        programa = self.arrancar_oculta()
        self.mostrar()
        self.abrir("alt+1", COMUNICACION)
        # By tabulator to the check box and, ticked, to its period.
        self.escritorio.teclear("alt+r", "Tab", "space", "Tab", "6", "0", "0", "Return")
        self.acepta("General", "Autom", "600;True")

        dialogo = self.abrir("alt+1", COMUNICACION)
        self.escritorio.teclear("alt+t", "0", "Return")  # refused, with a message
        self.escritorio.delante(PRINCIPAL, aparte_de=[self.principal])
        self.escritorio.teclear("Return")
        self.assertEqual(self.escritorio.delante(COMUNICACION), dialogo)
        self.comprobar_ini()
        self.escritorio.teclear("alt+t", "9", "9", "9", "Escape")
        self.escritorio.delante(PRINCIPAL)
        self.comprobar_ini()

        # What was cancelled is not in the settings that are written next either.
        self.abrir("alt+1", COMUNICACION)
        self.escritorio.teclear("alt+r", "7", "Return")
        self.acepta("General", "TimeOut", "300;7")
        self.ocultar()
        self.cerrar_por_el_menu(programa)
        self.comprobar_ini()

    def test_what_is_not_there_yet_cannot_be_viewed(self):
        self.arrancar_oculta()
        self.mostrar()
        for tecla in ("alt+4", "alt+5"):
            with self.subTest(tecla=tecla):
                self.escritorio.delante(PRINCIPAL)
                self.escritorio.teclear(tecla)
                mensaje = self.escritorio.delante(PRINCIPAL, aparte_de=[self.principal])
                self.escritorio.teclear("Return")
                self.escritorio.esperar_sin(mensaje, PRINCIPAL)
                self.assertEqual(self.escritorio.delante(PRINCIPAL), self.principal)
        self.comprobar_ini()
        self.assertFalse(self.banco.libro.exists())
        self.assertFalse(self.banco.texto.exists())

    def test_a_download_by_hand_goes_where_the_dialogs_have_said(self):
        simulador = self.banco.simular("--pesadas", PESADAS)
        programa = self.arrancar_oculta()
        self.mostrar()

        self.abrir("alt+2", EXCEL)
        # The first field's column, and the last one's, of two letters.
        self.escritorio.teclear("alt+m", "j", *["Down"] * 7, "a", "b", "alt+a")
        self.acepta("Excel", "Columnas", "10;2;3;4;5;6;7;28")

        self.abrir("alt+3", TEXTO)
        # The last field, two places further right.
        self.escritorio.teclear("alt+m", *["Down"] * 7, "Right", "7", "2", "Return")
        self.acepta("Texto", "Columnas", "1,16;18,8;27,7;35,8;44,8;53,8;62,7;72,7")

        self.assertEqual(simulador.veces("terminada"), 0)
        self.escritorio.teclear("alt+d")
        self.esperar(lambda: simulador.veces("terminada"), 60, "the end of the download")
        self.esperar(lambda: self.banco.lineas_texto() >= PESADAS, 20, "the text file")
        reconocidas = self.banco.reconocidas()
        self.assertEqual(len(reconocidas), PESADAS)
        lineas = [linea.linea(datos) for datos in reconocidas]
        self.assertEqual(
            banco.contenido(self.banco.texto),
            b"".join(texto[:69] + b"  " + texto[69:] for texto in lineas),
        )
        self.esperar(self.banco.libro.exists, 20, "the workbook")
        self.comprobar_ini()

        self.ocultar()
        self.cerrar_por_el_menu(programa)
        self.comprobar_ini()
        self.comparar_hoja(reconocidas)

    def comparar_hoja(self, reconocidas):
        vista = hoja_de_calculo.abrir(self.banco.libro).sheet_by_name("Pesadas")
        self.assertEqual(vista.nrows, PESADAS)
        columnas = [9, 1, 2, 3, 4, 5, 6, 27]  # from 0
        for i, datos in enumerate(reconocidas):
            fila = [hoja_de_calculo.celda(vista, i, columna) for columna in columnas]
            self.assertEqual(
                hoja_de_calculo.redondeada(fila),
                hoja_de_calculo.redondeada(hoja_de_calculo.esperada(datos)),
            )


if __name__ == "__main__":
    banco.ejecutar()
