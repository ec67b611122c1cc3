// SPDX-License-Identifier: MIT
#include "tools/simulador/Opciones.h"

#include <array>
#include <charconv>
#include <cstddef>
#include <string_view>
#include <system_error>

#include "tools/simulador/Ritmo.h"

namespace bn::simulador {

namespace {

using Valor = std::string_view;

struct Opcion {
    std::string_view nombre;
    std::string_view valor;  // how the help names it; empty: a switch
    std::string_view ayuda;
    void (*aplicar)(Opciones&, Valor);
};

template <class T>
T entero(Valor texto, T minimo, T maximo) {
    T numero{};
    const char* const fin = texto.data() + texto.size();
    const auto [hasta, error] = std::from_chars(texto.data(), fin, numero);
    if (error != std::errc() || hasta != fin || numero < minimo || numero > maximo) {
        throw ErrorOpciones("debe ser un número entero de " + std::to_string(minimo) + " a " +
                            std::to_string(maximo));
    }
    return numero;
}

int32_t cuenta(Valor texto, int32_t minimo = 0) {
    return entero<int32_t>(texto, minimo, 1'000'000);
}

std::chrono::milliseconds milisegundos(Valor texto) {
    return std::chrono::milliseconds(entero<int32_t>(texto, 0, 3'600'000));
}

char caracter(Valor texto) { return static_cast<char>(entero<int32_t>(texto, 0, 255)); }

std::string noVacio(Valor texto) {
    if (texto.empty()) throw ErrorOpciones("no puede estar vacío");
    return std::string(texto);
}

// Per cent, with up to four decimals, a point between.
uint32_t tasa(Valor texto) {
    const std::size_t punto = texto.find('.');
    std::string decimales(punto == Valor::npos ? Valor() : texto.substr(punto + 1));
    const bool sobranDecimales =
        decimales.size() > 4 || (punto != Valor::npos && decimales.empty());
    decimales.resize(4, '0');
    uint32_t porMillon = 1'000'001;
    try {
        porMillon = entero<uint32_t>(texto.substr(0, punto), 0, 100) * 10'000 +
                    entero<uint32_t>(decimales, 0, 9'999);
    } catch (const ErrorOpciones&) {
        porMillon = 1'000'001;  // told below, in terms of what was asked for
    }
    if (sobranDecimales || porMillon > 1'000'000) {
        throw ErrorOpciones("debe ser un porcentaje de 0 a 100, como 2.5");
    }
    return porMillon;
}

template <Averia averia>
void ponerTasa(Opciones& o, Valor v) {
    o.averias.porMillon[static_cast<std::size_t>(averia)] = tasa(v);
}

void ponerForma(Opciones& o, Valor v) {
    if (v != "corta" && v != "larga") throw ErrorOpciones("debe ser «corta» o «larga»");
    o.forma = v == "corta" ? Forma::kCorta : Forma::kLarga;
}

void ponerParametros(Opciones& o, Valor v) {
    if (!leerParametros(v)) throw ErrorOpciones("debe ser como 9600,N,8,1");
    o.parametros = v;
}

constexpr std::array<Opcion, 36> kOpciones = {{
    {"", "", "Línea", nullptr},
    {"--dispositivo", "RUTA", "usa ese puerto serie en vez de abrir un pseudoterminal",
     [](Opciones& o, Valor v) { o.dispositivo = noVacio(v); }},
    {"--enlace", "RUTA", "crea ahí un enlace al pseudoterminal; se quita al salir",
     [](Opciones& o, Valor v) { o.enlace = noVacio(v); }},
    {"--parametros", "TEXTO", "velocidad, paridad, bits y parada [9600,N,8,1]", ponerParametros},
    {"--sin-ritmo", "", "los bytes salen de golpe, no a la velocidad de la línea",
     [](Opciones& o, Valor) { o.ritmo = false; }},
    {"--inicial", "CODIGO", "carácter inicial de las tramas, de 0 a 255 [2]",
     [](Opciones& o, Valor v) { o.indicador.caracteres.inicial = caracter(v); }},
    {"--final", "CODIGO", "carácter final de los datos [3]",
     [](Opciones& o, Valor v) { o.indicador.caracteres.final = caracter(v); }},
    {"--peticion", "CODIGO", "carácter con que pide el ordenador [6]",
     [](Opciones& o, Valor v) { o.indicador.caracteres.peticion = caracter(v); }},
    {"", "", "Pesadas", nullptr},
    {"--pesadas", "N", "pesadas de cada tanda [10]",
     [](Opciones& o, Valor v) { o.indicador.pesadas = cuenta(v); }},
    {"--tandas", "N", "tandas, una por petición; después, ninguna pesada; 0: sin fin [1]",
     [](Opciones& o, Valor v) { o.indicador.tandas = cuenta(v); }},
    {"--forma", "FORMA", "corta (sin fecha y hora) o larga [larga]", ponerForma},
    {"--semilla", "N", "la misma semilla da las mismas pesadas y averías [1]",
     [](Opciones& o, Valor v) { o.semilla = entero<uint64_t>(v, 0, UINT64_MAX); }},
    {"--digitos", "N", "cifras del contador final, 4 o 5 [4]",
     [](Opciones& o, Valor v) { o.indicador.digitos = entero<int32_t>(v, 4, 5); }},
    {"--espera", "MS", "sin respuesta en ese tiempo deja la descarga; 0: nunca [2000]",
     [](Opciones& o, Valor v) { o.indicador.espera = milisegundos(v); }},
    {"--salir", "", "termina al acabar la última tanda",
     [](Opciones& o, Valor) { o.salir = true; }},
    {"", "", "Averías, en tanto por ciento de las tramas [0]", nullptr},
    {"--averia-control", "P", "carácter de control equivocado", ponerTasa<Averia::kControl>},
    {"--averia-ruido", "P", "ruido delante de la trama", ponerTasa<Averia::kRuido>},
    {"--averia-corte", "P", "trama a medias", ponerTasa<Averia::kCorte>},
    {"--averia-retorno", "P", "retorno de carro dentro de los datos", ponerTasa<Averia::kRetorno>},
    {"--averia-cola", "P", "final de trama en orden cambiado", ponerTasa<Averia::kCola>},
    {"--averia-goteo", "P", "trama byte a byte", ponerTasa<Averia::kGoteo>},
    {"--averia-pausa", "P", "pausa antes de la trama o en medio", ponerTasa<Averia::kPausa>},
    {"--averia-respuesta", "P", "respuesta del ordenador perdida", ponerTasa<Averia::kRespuesta>},
    {"--goteo-ms", "MS", "tiempo entre bytes del goteo [3]",
     [](Opciones& o, Valor v) { o.averias.goteo = milisegundos(v); }},
    {"--pausa-ms", "MS", "duración de la pausa [300]",
     [](Opciones& o, Valor v) { o.averias.pausa = milisegundos(v); }},
    {"--averias-seguidas", "N", "averías seguidas de una pesada, como mucho [2]",
     [](Opciones& o, Valor v) { o.averias.seguidas = cuenta(v, 1); }},
    {"--silencio-tras", "N", "calla tras la pesada N reconocida",
     [](Opciones& o, Valor v) { o.indicador.silencioTras = cuenta(v, 1); }},
    {"--silencio-ms", "MS", "duración del silencio; 0: para siempre [0]",
     [](Opciones& o, Valor v) { o.indicador.silencio = milisegundos(v); }},
    {"--desaparece-tras", "N", "cierra la línea tras la pesada N reconocida, y termina",
     [](Opciones& o, Valor v) { o.indicador.desapareceTras = cuenta(v, 1); }},
    {"--vuelve-ms", "MS", "no termina: vuelve a abrir la línea pasado ese tiempo",
     [](Opciones& o, Valor v) {
         o.vuelve = true;
         o.vuelta = milisegundos(v);
     }},
    {"", "", "Salida", nullptr},
    {"--registro", "FICHERO", "guarda los datos de cada pesada reconocida, uno por línea",
     [](Opciones& o, Valor v) { o.registro = noVacio(v); }},
    {"--detalle", "", "cuenta lo que va pasando", [](Opciones& o, Valor) { o.detalle = true; }},
    {"--help", "", "muestra esta ayuda", [](Opciones& o, Valor) { o.ayuda = true; }},
}};

const Opcion& buscar(Valor nombre) {
    for (const Opcion& opcion : kOpciones) {
        if (opcion.aplicar != nullptr && opcion.nombre == nombre) return opcion;
    }
    throw ErrorOpciones("no se conoce la opción «" + std::string(nombre) + "»");
}

void aplicar(Opciones& opciones, const Opcion& opcion, Valor valor) {
    try {
        opcion.aplicar(opciones, valor);
    } catch (const ErrorOpciones& error) {
        throw ErrorOpciones("el valor «" + std::string(valor) + "» de " +
                            std::string(opcion.nombre) + " " + error.what());
    }
}

void comprobar(const Opciones& o) {
    if (!o.dispositivo.empty() && !o.enlace.empty()) {
        throw ErrorOpciones("--enlace es para el pseudoterminal: no va con --dispositivo");
    }
    if (o.vuelve && o.indicador.desapareceTras == 0) {
        throw ErrorOpciones("--vuelve-ms necesita --desaparece-tras");
    }
    if (o.indicador.silencio.count() > 0 && o.indicador.silencioTras == 0) {
        throw ErrorOpciones("--silencio-ms necesita --silencio-tras");
    }
}

}  // namespace

Opciones leerOpciones(const std::vector<std::string>& argumentos) {
    Opciones opciones;
    for (std::size_t i = 0; i < argumentos.size(); ++i) {
        const std::string_view argumento = argumentos[i];
        const std::size_t igual = argumento.find('=');
        const Valor nombreOpcion = argumento.substr(0, igual);
        const Opcion& opcion = buscar(nombreOpcion == "-h" ? Valor("--help") : nombreOpcion);
        Valor valor;
        if (opcion.valor.empty()) {
            if (igual != Valor::npos) {
                throw ErrorOpciones("la opción " + std::string(opcion.nombre) + " no lleva valor");
            }
        } else if (igual != Valor::npos) {
            valor = argumento.substr(igual + 1);
        } else if (i + 1 < argumentos.size()) {
            valor = argumentos[++i];
        } else {
            throw ErrorOpciones("falta el valor de " + std::string(opcion.nombre));
        }
        aplicar(opciones, opcion, valor);
    }
    if (!opciones.ayuda) comprobar(opciones);
    return opciones;
}

std::string textoAyuda() {
    constexpr std::size_t kColumna = 28;
    std::string texto =
        "Uso: bnDX5-simulador [OPCIONES]\n\n"
        "Hace de Indicador Balnor DX5: abre un pseudoterminal, escribe su ruta y contesta\n"
        "a las peticiones del ordenador con pesadas inventadas. Se para con Ctrl+C, y al\n"
        "terminar escribe un resumen. Entre corchetes, el valor cuando no se da la opción.\n";
    for (const Opcion& opcion : kOpciones) {
        if (opcion.aplicar == nullptr) {
            texto += "\n" + std::string(opcion.ayuda) + ":\n";
            continue;
        }
        std::string linea = "  " + std::string(opcion.nombre);
        if (!opcion.valor.empty()) linea += " " + std::string(opcion.valor);
        linea.resize(linea.size() < kColumna ? kColumna : linea.size() + 1, ' ');
        texto += linea + std::string(opcion.ayuda) + "\n";
    }
    texto +=
        "\nEl resumen: enviadas (tramas de pesada, las repetidas también), reconocidas,\n"
        "rechazadas y reenviadas; después, cuántas averías de cada clase.\n"
        "Estado de salida: 0 bien, 1 la línea o el registro fallan, 2 opciones incorrectas.\n";
    return texto;
}

}  // namespace bn::simulador
