#include "benchmarks/GeneratedDxf.h"

#include <cmath>
#include <random>

namespace Torvik::Bench {

namespace {

QByteArray pair(int code, const QByteArray& value)
{
    return QByteArray::number(code) + '\n' + value + '\n';
}

QByteArray metres(double value)
{
    return QByteArray::number(value, 'f', 3);
}

QByteArray at(int code, double x, double y)
{
    return pair(code, metres(x)) + pair(code + 10, metres(y));
}

QByteArray head()
{
    QByteArray layers;
    for (int i = 1; i <= 20; ++i)
        layers += pair(0, "LAYER") + pair(2, "L" + QByteArray::number(i)) + pair(70, "0") +
                  pair(62, QByteArray::number(i * 10)) + pair(6, "CONTINUOUS");
    const QByteArray tree = pair(0, "BLOCK") + pair(8, "0") + pair(2, "TREE") + pair(70, "0") + at(10, 0, 0) +
                            pair(0, "CIRCLE") + pair(8, "0") + at(10, 0, 0) + pair(40, "2.5") + pair(0, "ENDBLK");
    return pair(0, "SECTION") + pair(2, "HEADER") + pair(9, "$ACADVER") + pair(1, "AC1015") + pair(0, "ENDSEC") +
           pair(0, "SECTION") + pair(2, "TABLES") + pair(0, "TABLE") + pair(2, "LAYER") + pair(70, "20") + layers +
           pair(0, "ENDTAB") + pair(0, "ENDSEC") + pair(0, "SECTION") + pair(2, "BLOCKS") + tree + pair(0, "ENDSEC") +
           pair(0, "SECTION") + pair(2, "ENTITIES");
}

QByteArray tail()
{
    return pair(0, "ENDSEC") + pair(0, "EOF");
}

class Town {
public:
    QByteArray next()
    {
        const double x = 500000.0 + m_place(m_chance);
        const double y = 5600000.0 + m_place(m_chance);
        switch (++m_count % 16) {
        case 0:
            return entity("TEXT", "AcDbText") + at(10, x, y) + pair(40, "1.5") +
                   pair(1, "Nr. " + QByteArray::number(m_count));
        case 1:
            return entity("POINT", "AcDbPoint") + at(10, x, y);
        case 2:
            return entity("INSERT", "AcDbBlockReference") + pair(2, "TREE") + at(10, x, y);
        case 3:
        case 4:
        case 5:
            return building(x, y);
        default:
            return entity("LINE", "AcDbLine") + at(10, x, y) + at(11, x + m_length(m_chance), y + m_length(m_chance));
        }
    }

private:
    QByteArray entity(const QByteArray& kind, const QByteArray& subclass)
    {
        return pair(0, kind) + pair(5, QByteArray::number(0x1000 + m_count, 16)) + pair(100, "AcDbEntity") +
               pair(8, "L" + QByteArray::number(m_count % 20 + 1)) + pair(100, subclass);
    }

    QByteArray building(double x, double y)
    {
        QByteArray text = entity("LWPOLYLINE", "AcDbPolyline") + pair(90, "6") + pair(70, "1");
        const double corners[6][2] = {{0, 0}, {12, 0}, {12, 5}, {8, 5}, {8, 9}, {0, 9}};
        for (const auto& corner : corners)
            text += at(10, x + corner[0], y + corner[1]);
        return text;
    }

    std::mt19937 m_chance {42};
    std::uniform_real_distribution<double> m_place {0.0, 4000.0};
    std::uniform_real_distribution<double> m_length {-30.0, 30.0};
    int m_count = 0;
};

} // namespace

QByteArray generatedPlan(int bytes)
{
    Town town;
    QByteArray text = head();
    text.reserve(bytes);
    const QByteArray end = tail();
    for (QByteArray next = town.next(); text.size() + next.size() + end.size() <= bytes; next = town.next())
        text += next;
    return text + end;
}

QByteArray generatedSegments(int count)
{
    std::mt19937 chance(42);
    std::uniform_real_distribution<double> place(-1000.0, 1000.0);
    std::uniform_real_distribution<double> length(2.0, 12.0);
    std::uniform_real_distribution<double> angle(0.0, 6.283);
    QByteArray text = head();
    for (int i = 0; i < count; ++i) {
        const double x = place(chance);
        const double y = place(chance);
        const double far = length(chance);
        const double turn = angle(chance);
        text += pair(0, "LINE") + pair(5, QByteArray::number(0x1000 + i, 16)) +
                pair(8, "L" + QByteArray::number(i % 20 + 1)) + at(10, x, y) +
                at(11, x + far * std::cos(turn), y + far * std::sin(turn));
    }
    return text + tail();
}

} // namespace Torvik::Bench
