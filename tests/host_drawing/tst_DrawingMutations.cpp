#include "common/Mutations.h"
#include "host_drawing/DxfText.h"

#include <QtTest>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size);

using namespace Kx::Test;

/** What the fuzzer does for as long as it is let, here for a moment and always the same. */
class tst_DrawingMutations : public QObject {
    Q_OBJECT

private slots:
    void damagedDrawingsNeverCrash()
    {
        const QByteArray sound = Dxf::drawing(
            Dxf::line(1, 0, 0, 1, 1) + Dxf::insert(2, "b", 5, 5, Dxf::pair(70, "2")) +
                Dxf::entity("TEXT", 3, Dxf::at(10, 0, 0) + Dxf::pair(40, "2") + Dxf::pair(1, "abc")) +
                Dxf::entity("ARC", 4,
                            Dxf::at(10, 0, 0) + Dxf::pair(40, "5") + Dxf::pair(50, "0") + Dxf::pair(51, "90")),
            Dxf::layer("frozen", 1, 1), Dxf::block("b", Dxf::line(5, 0, 0, 1, 1)));
        std::mt19937 chance(7);
        for (int run = 0; run < 500; ++run) {
            const QByteArray text = damaged(sound, chance);
            QCOMPARE(LLVMFuzzerTestOneInput(reinterpret_cast<const unsigned char*>(text.constData()),
                                            std::size_t(text.size())),
                     0);
        }
    }
};

QTEST_APPLESS_MAIN(tst_DrawingMutations)
#include "tst_DrawingMutations.moc"
