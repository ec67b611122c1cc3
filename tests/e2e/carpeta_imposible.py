#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""The folder of a destination is away: the weighings wait, nobody has to be there, and all of them
arrive, once and in order, when it is back."""

import banco
import escritorio
import hoja_de_calculo
import linea

PESADAS = 10
PRINCIPAL = "^bnDX5$"  # the message box too


class CarpetaImposible(banco.PruebaConBanco):
    def preparar(self, tandas, automatica="1;False", hoja=False):
        """The text file's folder is away; the indicator has so many downloads."""
        self.fuera = self.banco.carpeta / "no-hay"
        self.banco.texto = self.fuera / "Pesadas.txt"
        excel = hoja_de_calculo.claves(self.banco) if hoja else None
        self.banco.configurar({"Autom": automatica}, excel=excel)
        self.simulador = self.banco.simular("--pesadas", PESADAS, "--tandas", tandas)

    def esperar_descargas(self, cuantas):
        # The acknowledge of a counter record follows the saving, and these fail.
        self.esperar(
            lambda: self.simulador.veces("contador") >= cuantas, 30, f"{cuantas} downloads"
        )

    def test_automatic_downloads_go_on_without_a_message_and_arrive_when_it_is_back(self):
        self.preparar(tandas=3)
        self.banco.arrancar()
        self.esperar_descargas(2)
        self.assertEqual(len(self.banco.ventanas()), 1, "nobody is asked anything")
        self.esperar(
            lambda: "bnGuardo-000001.txt" in self.banco.sobras(), 10, "weighings put aside"
        )
        self.assertFalse(self.banco.texto.exists())
        self.fuera.mkdir()
        self.comprobar_texto(3 * PESADAS)
        self.assertEqual(len(self.banco.ventanas()), 1)

    def test_it_comes_and_goes_and_every_weighing_arrives_once(self):
        self.preparar(tandas=4)
        aparte = self.banco.carpeta / "apartada"
        self.fuera.mkdir()
        self.banco.arrancar()
        for vuelta in (1, 3):
            self.comprobar_texto(vuelta * PESADAS)
            self.fuera.rename(aparte)
            self.esperar(self.banco.sobras, 20, "weighings put aside")
            self.assertEqual(len(self.banco.ventanas()), 1)
            aparte.rename(self.fuera)
            self.esperar_descargas(vuelta + 1)
        self.comprobar_texto(4 * PESADAS)

    def test_the_worksheet_gets_its_rows_meanwhile(self):
        self.preparar(tandas=2, hoja=True)
        self.banco.arrancar()
        self.esperar_descargas(3)
        hoja_de_calculo.comprobar_filas(self, self.banco.reconocidas())
        self.fuera.mkdir()
        hoja_de_calculo.comprobar_filas(self, self.comprobar_texto(2 * PESADAS))

    def test_what_waits_is_saved_by_the_next_start_without_an_indicator(self):
        self.preparar(tandas=2)
        programa = self.banco.arrancar()
        self.esperar_descargas(2)
        self.esperar(lambda: len(self.banco.reconocidas()) == 2 * PESADAS, 10, "the weighings")
        self.banco.matar(programa)
        self.simulador.resumen()
        self.fuera.mkdir()
        self.banco.configurar({"Autom": "0;False"})
        self.banco.arrancar()
        self.comprobar_texto(2 * PESADAS)

    def test_a_download_asked_for_tells_in_a_box_that_holds_up_nothing(self):
        self.preparar(tandas=3, automatica="3;False")
        mesa = escritorio.Escritorio(self.banco)
        self.banco.arrancar()
        principal = mesa.delante(PRINCIPAL)
        mesa.teclear("alt+d")
        caja = mesa.delante(PRINCIPAL, aparte_de=[principal])
        self.esperar_descargas(3)  # the automatic ones, meanwhile
        self.assertEqual(sorted(self.banco.ventanas()), sorted([principal, caja]))
        self.fuera.mkdir()
        self.comprobar_texto(3 * PESADAS)
        mesa.teclear("Return")
        mesa.esperar_sin(caja, PRINCIPAL)
        self.assertEqual(mesa.delante(PRINCIPAL), principal)

    def test_saving_now_saves_at_once(self):
        self.preparar(tandas=1, automatica="0;False")
        mesa = escritorio.Escritorio(self.banco)
        self.banco.arrancar()
        principal = mesa.delante(PRINCIPAL)
        for orden in ("alt+d", "alt+g"):  # neither can, yet
            mesa.teclear(orden)
            caja = mesa.delante(PRINCIPAL, aparte_de=[principal])
            self.assertFalse(self.banco.texto.exists())
            mesa.teclear("Return")
            mesa.esperar_sin(caja, PRINCIPAL)
            mesa.delante(PRINCIPAL)
        self.fuera.mkdir()
        mesa.teclear("alt+g")
        self.esperar(lambda: self.banco.lineas_texto() >= PESADAS, 10, "the weighings")
        self.assertEqual(self.simulador.veces("petición"), 1, "no download has brought them")
        self.assertEqual(
            banco.contenido(self.banco.texto), linea.lineas(self.banco.reconocidas())
        )
        self.assertEqual(mesa.delante(PRINCIPAL), principal)


if __name__ == "__main__":
    banco.ejecutar()
