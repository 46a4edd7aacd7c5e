#include "network/NodeInformationToggle.h"

#include "network/Node.h"

#include <QFont>

namespace Torvik::View3d {

namespace {

constexpr float linesHeight = 3.0F;
constexpr float nameHeight = 0.33333334F;
constexpr qreal linesWordSpacing = -5.0;
constexpr int linesPointSize = 288;
constexpr int namePointSize = 24;
constexpr int leastStretch = 8;
/** Longest text that has the least stretch, and how much a letter more adds. */
constexpr int shortText = 9;
constexpr double stretchPerLetter = 0.2;

} // namespace

void NodeInformationToggle::setFullInfoLabelParameters(Node* node, const QString& info)
{
    NameTag& tag = node->nameTag();
    const int length = tag.text().size();
    QFont font;
    font.setWordSpacing(linesWordSpacing);
    font.setPointSize(linesPointSize);
    font.setStretch(length > shortText ? static_cast<int>(length * stretchPerLetter + leastStretch) : leastStretch);
    tag.multiplyHeight(linesHeight);
    tag.setText(QLatin1Char(' ') + node->name() + info);
    tag.setFont(font);
}

void NodeInformationToggle::setShortInfoLabelParameters(Node* node, const QString& info)
{
    NameTag& tag = node->nameTag();
    QFont font;
    font.setPointSize(namePointSize);
    font.setWeight(QFont::Normal);
    tag.multiplyHeight(nameHeight);
    tag.setText(node->name().split(info).first().trimmed());
    tag.setFont(font);
}

} // namespace Torvik::View3d
