// SPDX-License-Identifier: MIT
// Whatever the program keeps, it keeps on its platform's disk, and nothing beside it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/download/DescargaDePrueba.h"
#include "tests/soporte/DiscoSimulado.h"

namespace bn {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::IsSupersetOf;

class DiscoDeLaPlataforma : public testing::Test {
 protected:
    void SetUp() override {
        disco.crearCarpeta(carpeta.ruta());
        plataforma.usarDisco(disco);
        plataforma.documentos = ficheros::aTexto(carpeta.ruta());
    }
    void llegan(const std::vector<std::string>& tramas) {
        for (const std::string& trama : tramas) plataforma.puerto().recibir(prueba::trama(trama));
    }
    /// A whole download of two weighings; the state it ends in.
    int32_t descargar() {
        const auto cfg = std::make_shared<bn::Setup>(plataforma);
        cfg->UsoExcel(true);
        cfg->UsoTexto(true);
        Descarga descarga(plataforma);
        descarga.DatosCfg(cfg);
        if (!descarga.iniciarProceso()) return -1;
        prueba::PesadaDePrueba pesada;
        llegan({pesada.datos(), pesada.datos(), "0002"});
        return descarga.Estado();
    }

    prueba::CarpetaTemporal carpeta;
    DiscoSimulado disco;
    PlataformaDePrueba plataforma{carpeta.ruta()};
};

TEST_F(DiscoDeLaPlataforma, ADownloadLeavesItsFilesThereAndAllOfThemFlushed) {
    ASSERT_EQ(descargar(), 4);
    EXPECT_THAT(disco.nombres(carpeta.ruta()),
                IsSupersetOf({"Pesadas.txt", "Pesadas.xls", "bnDX5.ini", "bnGuardo.txt"}));
    EXPECT_TRUE(disco.todoVolcado());
    EXPECT_THAT(disco.contenido(carpeta / "bnDX5.ini"), HasSubstr("[General]"));
    EXPECT_THAT(carpeta.nombres(), IsEmpty());
    EXPECT_THAT(plataforma.mensajes, IsEmpty());
}

TEST_F(DiscoDeLaPlataforma, ADownloadThatDiesAtAnyOperationLeavesNoRecordThatItAcknowledgedBehind) {
    prueba::PesadaDePrueba pesada;
    for (std::int64_t k = 1;; ++k) {
        DiscoSimulado otro;
        otro.crearCarpeta(carpeta.ruta());
        plataforma.usarDisco(otro);
        otro.morirEn(k);
        std::size_t reconocidas = 0;
        bool muerto = false;
        try {
            const auto cfg = std::make_shared<bn::Setup>(plataforma);
            cfg->Abandonar();
            cfg->UsoExcel(false);
            cfg->UsoTexto(true);
            Descarga descarga(plataforma);
            descarga.DatosCfg(cfg);
            ASSERT_TRUE(descarga.iniciarProceso());
            plataforma.puerto().enviado.clear();
            for (int i = 0; i < 2; ++i) {
                llegan({pesada.datos()});
                if (std::exchange(plataforma.puerto().enviado, {}) == prueba::kAck) ++reconocidas;
            }
            llegan({"0002"});
        } catch (const MuerteSubita&) {
            muerto = true;
        }
        if (!muerto) {
            EXPECT_GT(k, 8);
            EXPECT_EQ(reconocidas, 2U);
            break;
        }
        otro.cortarCorriente(static_cast<std::uint64_t>(k));
        otro.revivir();
        std::string entera;
        for (std::size_t i = 0; i < reconocidas; ++i) entera += pesada.datos() + "\r\n";
        if (reconocidas == 0) continue;
        EXPECT_THAT(otro.contenido(carpeta / "bnGuardo.txt"), testing::StartsWith(entera)) << k;
    }
}

}  // namespace
}  // namespace bn
