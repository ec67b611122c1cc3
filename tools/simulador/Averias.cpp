// SPDX-License-Identifier: MIT
#include "tools/simulador/Averias.h"

#include <utility>

namespace bn::simulador {

namespace {

constexpr uint32_t kSiempre = 1'000'000;
// Long enough for the computer's first answer to come, and be missed, before the rest follows.
constexpr std::chrono::milliseconds kTrasRetorno{20};

constexpr std::array<std::string_view, kNumeroAverias> kNombres = {
    "control", "ruido", "corte", "retorno", "cola", "goteo", "pausa", "respuesta"};

}  // namespace

std::string_view nombre(Averia averia) {
    const auto i = static_cast<std::size_t>(averia);
    return i < kNombres.size() ? kNombres[i] : "ninguna";
}

bool Averias::ocurre(Averia averia, int32_t yaSeguidas) {
    const uint32_t tasa = ajustes_.porMillon[static_cast<std::size_t>(averia)];
    const bool toca = azar_.ocurre(tasa);
    return toca && (yaSeguidas < ajustes_.seguidas || tasa >= kSiempre);
}

Averia Averias::sortear(int32_t yaSeguidas) {
    for (std::size_t i = 0; i < static_cast<std::size_t>(Averia::kRespuesta); ++i) {
        const auto averia = static_cast<Averia>(i);
        if (ocurre(averia, yaSeguidas)) return averia;
    }
    return Averia::kNinguna;
}

bool Averias::pierdeRespuesta(int32_t yaSeguidas) { return ocurre(Averia::kRespuesta, yaSeguidas); }

Envio Averias::aplicar(Averia averia, const std::string& trama, const Caracteres& caracteres) {
    const std::size_t cola = trama.size() - 2;
    switch (averia) {
        case Averia::kControl:
            return conControlMalo(trama);
        case Averia::kRuido:
            return {{.bytes = ruido(caracteres) + trama}};
        case Averia::kCorte:
            return {
                {.bytes = trama.substr(0, 1 + azar_.menorQue(static_cast<uint32_t>(cola - 1)))}};
        case Averia::kRetorno:
            return conRetorno(trama);
        case Averia::kCola:
            return {{.bytes = trama.substr(0, cola) + kRetornoCarro + kAvanceLinea}};
        case Averia::kGoteo:
            return gotaAGota(trama);
        case Averia::kPausa:
            return conPausa(trama);
        case Averia::kRespuesta:
        case Averia::kNinguna:
            break;
    }
    return {{.bytes = trama}};
}

std::string Averias::ruido(const Caracteres& caracteres) {
    const uint32_t cuantos = 1 + azar_.menorQue(8);
    std::string bytes;
    while (bytes.size() < cuantos) {
        const char c = static_cast<char>(azar_.menorQue(256));
        // A carriage return is another fault; a start character could make it all look like a
        // frame.
        if (c != kRetornoCarro && c != caracteres.inicial) bytes += c;
    }
    return bytes;
}

Envio Averias::conControlMalo(std::string trama) {
    char& control = trama[trama.size() - 3];
    const char bueno = control;
    do {
        control = static_cast<char>(azar_.menorQue(256));
    } while (control == bueno || control == kRetornoCarro);
    return {{.bytes = std::move(trama)}};
}

Envio Averias::conRetorno(std::string trama) {
    // In the first half: the computer must have refused the head before the tail has ended.
    const std::size_t datos = trama.size() - 5;
    const std::size_t donde = 1 + azar_.menorQue(static_cast<uint32_t>((datos + 1) / 2));
    trama[donde] = kRetornoCarro;
    return {{.bytes = trama.substr(0, donde + 1)},
            {.pausa = kTrasRetorno, .bytes = trama.substr(donde + 1)}};
}

Envio Averias::gotaAGota(const std::string& trama) const {
    Envio envio;
    envio.reserve(trama.size());
    for (const char c : trama) {
        envio.push_back({.pausa = ajustes_.goteo, .bytes = std::string(1, c)});
    }
    return envio;
}

Envio Averias::conPausa(const std::string& trama) {
    const std::size_t donde = azar_.menorQue(static_cast<uint32_t>(trama.size()));
    if (donde == 0) return {{.pausa = ajustes_.pausa, .bytes = trama}};
    return {{.bytes = trama.substr(0, donde)},
            {.pausa = ajustes_.pausa, .bytes = trama.substr(donde)}};
}

}  // namespace bn::simulador
