#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Asked to end while weighings arrive: the system is obeyed, in order; a person's request to close is
refused until they have been saved."""

import banco
import escritorio

PESADAS = 40
PRINCIPAL = "^bnDX5$"


class Cierre(banco.PruebaConBanco):
    def llegar_a(self, simulador, cuantas):
        self.esperar(
            lambda: simulador.veces("reconocida") >= cuantas, 30, f"weighing {cuantas}"
        )

    def test_asked_by_the_system_it_ends_in_order_and_the_next_start_saves(self):
        self.banco.configurar()
        simulador = self.banco.simular("--pesadas", PESADAS, "--espera", 1000)
        programa = self.banco.arrancar()
        self.llegar_a(simulador, PESADAS // 2)
        self.assertEqual(self.banco.terminar(programa), 0)
        self.esperar(lambda: simulador.veces("abandonada"), 10, "the indicator giving up")
        guardadas = banco.contenido(self.banco.almacen).split(b"\r\n")
        self.assertEqual(guardadas.pop(), b"", "the last line has its end")
        reconocidas = self.banco.reconocidas()
        self.assertLess(len(reconocidas), PESADAS, "the download had already ended")
        self.assertEqual(guardadas[: len(reconocidas)], reconocidas)
        self.assertLessEqual(len(guardadas), len(reconocidas) + 1, "one not acknowledged, at most")
        self.banco.arrancar()
        self.esperar(
            lambda: self.banco.lineas_texto() >= len(guardadas), 10, "what had been received"
        )
        self.llegar_a(simulador, PESADAS)
        self.comprobar_texto(PESADAS)

    def test_asked_by_the_system_while_weighings_wait_it_ends_at_once(self):
        self.banco.texto = self.banco.carpeta / "no-hay" / "Pesadas.txt"
        self.banco.configurar()
        self.banco.simular("--pesadas", 5, "--tandas", 2)
        programa = self.banco.arrancar()
        self.esperar(self.banco.sobras, 20, "weighings put aside")
        self.assertEqual(self.banco.terminar(programa), 0)
        self.banco.texto.parent.mkdir()
        self.banco.arrancar()
        self.esperar(lambda: len(self.banco.reconocidas()) == 10, 20, "the weighings")
        self.comprobar_texto(10)

    def test_a_persons_request_is_refused_while_weighings_arrive(self):
        self.banco.configurar({"Autom": "0;False"})
        simulador = self.banco.simular("--pesadas", PESADAS)
        mesa = escritorio.Escritorio(self.banco)
        programa = self.banco.arrancar()
        principal = mesa.delante(PRINCIPAL)
        mesa.teclear("alt+d")
        self.llegar_a(simulador, 3)
        mesa.teclear("alt+F4", "alt+c")
        self.assertLess(simulador.veces("reconocida"), PESADAS, "they still arrive")
        self.llegar_a(simulador, PESADAS)
        self.esperar(lambda: simulador.veces("terminada"), 20, "the end of the download")
        self.assertEqual(mesa.delante(PRINCIPAL), principal)
        self.comprobar_texto(PESADAS)
        mesa.insistir(
            lambda: mesa.teclear("alt+F4"), lambda: programa.poll() is not None, "the end"
        )
        self.assertEqual(self.banco.acabado(programa), 0)


if __name__ == "__main__":
    banco.ejecutar()
