#include "labels/Label.h"

#include "scene/Fuzzy.h"
#include "scene/GlobalNav.h"

namespace Torvik::View3d {

namespace {

const QString family = QStringLiteral("DejaVu Sans Mono");
constexpr int pointSize = 24;

} // namespace

QFont Label::defaultFont()
{
    static const QFont font(family, pointSize, QFont::Normal, false);
    return font;
}

Label::Label(Renderable* parent, QString const& text)
    : Renderable(parent)
    , m_textColor(QStringLiteral("white"))
    , m_parentRenderable(parent)
    , m_font(defaultFont())
    , m_text(text)
{
    setEnabled(GlobalNav::instance()->labelsVisible());
    connect(this, &Label::textChanged, this, &Label::onTextChanged);
    connect(this, &Label::heightChanged, this, &Label::onHeightChanged);
    connect(this, &Label::fontChanged, this, &Label::onFontChanged);
    connect(GlobalNav::instance(), &GlobalNav::labelsVisibleChanged, this, [this](bool visible) {
        if (m_commonSwitch)
            show(visible && m_visible);
    });
    connect(this, &Label::visibleChanged, this,
            [this](bool visible) { show(visible && (!m_commonSwitch || GlobalNav::instance()->labelsVisible())); });
}

QString Label::renderableType() const
{
    return QStringLiteral("label");
}

void Label::delayedInit()
{
    m_parentRenderable = qobject_cast<Renderable*>(parentNode());
}

void Label::show(bool shown)
{
    setEnabled(shown);
}

void Label::leaveCommonSwitch()
{
    m_commonSwitch = false;
    show(m_visible);
}

void Label::setText(QString const& text)
{
    if (m_text == text)
        return;
    m_text = text;
    emit textChanged(text);
}

void Label::setFont(QFont const& font)
{
    if (m_font == font)
        return;
    m_font = font;
    emit fontChanged();
}

void Label::setHeight(float height)
{
    if (Fuzzy::equal(m_height, height))
        return;
    m_height = height;
    emit heightChanged();
}

void Label::setVisible(bool visible)
{
    if (m_visible == visible)
        return;
    m_visible = visible;
    emit visibleChanged(visible);
}

} // namespace Torvik::View3d
