#include "labels/NameTag.h"

#include "labels/ImageLabel.h"
#include "labels/LabelBoard.h"
#include "labels/LabelLook.h"
#include "labels/LabelPlacement.h"
#include "labels/LabelsPositionsLoader.h"
#include "network/NodeInformationToggle.h"
#include "scene/GlobalNav.h"

#include <utility>

namespace Torvik::View3d {

NameTag::NameTag(Renderable& owner, Rank rank)
    : m_owner(owner)
    , m_font(Label::defaultFont())
    , m_rank(rank)
{
}

NameTag::~NameTag()
{
    if (place < 0)
        return;
    QObject::disconnect(m_ownerMoves);
    LabelBoard::instance().remove(this);
}

void NameTag::enroll()
{
    // A nameless object never has a label to be seen.
    if (place >= 0 || m_blank)
        return;
    auto& board = LabelBoard::instance();
    board.add(this);
    lookUpStoredPosition();
    // One that is drawn as well: it leaves room, and takes that of others.
    m_ownerMoves = QObject::connect(&m_owner, &Renderable::transformChanged, &board, [&board] { board.schedule(); });
}

ImageLabel* NameTag::liveLabel() const
{
    return m_label;
}

ImageLabel* NameTag::label()
{
    m_kept = true;
    if (!m_label)
        LabelBoard::instance().schedule();
    return makeLabel();
}

ImageLabel* NameTag::makeLabel()
{
    if (m_label)
        return m_label;
    m_label = ImageLabel::create(&m_owner, LabelBoard::instance().root(), m_text);
    dressLabel();
    return m_label;
}

void NameTag::dressLabel()
{
    m_label->setText(m_text);
    m_label->setMultiline(m_multiline);
    m_label->setFont(m_font);
    if (m_background.isValid())
        m_label->setBackgroundColor(m_background);
    if (!m_commonSwitch)
        m_label->leaveCommonSwitch();
    m_label->setVisible(m_visible);
    m_label->setOffset(m_offset);
    m_label->onParentVisibilityChanged(m_ownerVisible);
    m_label->onSceneHeightChanged();
}

void NameTag::takeOver(NameTag& before)
{
    if (place < 0 || before.place < 0 || m_label)
        return;
    LabelBoard::instance().replace(&before, this);
    QObject::disconnect(before.m_ownerMoves);
    touched = before.touched;
    lastDrawn = before.lastDrawn;
    m_kept = before.m_kept;
    m_label = std::exchange(before.m_label, nullptr);
    if (!m_label)
        return;
    m_label->goOverTo(&m_owner);
    dressLabel();
}

void NameTag::letLabelGo()
{
    if (!m_label || m_kept)
        return;
    m_label->deleteLater();
    m_label = nullptr;
}

void NameTag::setText(const QString& text)
{
    m_set = true;
    if (m_text == text)
        return;
    m_text = text;
    m_blank = text.trimmed().isEmpty();
    m_aspect = unknown;
    enroll();
    if (m_label) {
        m_label->setText(text);
        m_label->onParentVisibilityChanged(m_ownerVisible);
    }
    LabelBoard::instance().schedule();
}

void NameTag::setFont(const QFont& font)
{
    m_font = font;
    m_aspect = unknown;
    if (m_label)
        m_label->setFont(font);
    LabelBoard::instance().schedule();
}

void NameTag::setMultiline(bool multiline)
{
    m_multiline = multiline;
    if (m_label)
        m_label->setMultiline(multiline);
    LabelBoard::instance().schedule();
}

void NameTag::multiplyHeight(float factor)
{
    if (m_label)
        m_label->setHeight(m_label->height() * factor);
}

void NameTag::setBackground(const QColor& background)
{
    m_background = background;
    if (m_label)
        m_label->setBackgroundColor(background);
}

void NameTag::setOffset(const QVector3D& offset)
{
    if (m_offset == offset)
        return;
    m_offset = offset;
    if (m_label)
        m_label->setOffset(offset);
    LabelBoard::instance().schedule();
}

void NameTag::setVisible(bool visible)
{
    if (m_visible == visible)
        return;
    m_visible = visible;
    if (m_label)
        m_label->setVisible(visible);
    LabelBoard::instance().schedule();
}

void NameTag::setOwnerVisible(bool visible)
{
    if (m_ownerVisible == visible)
        return;
    m_ownerVisible = visible;
    if (m_label)
        m_label->onParentVisibilityChanged(visible);
    LabelBoard::instance().schedule();
}

bool NameTag::wantsRoom() const
{
    // One that waits for its removal is disabled; a scene that another has followed may still have its objects.
    return !m_blank && m_visible && m_ownerVisible && m_owner.isEnabled() &&
           (!m_commonSwitch || GlobalNav::instance()->labelsVisible()) && LabelBoard::instance().isInScene(&m_owner);
}

bool NameTag::wasMoved() const
{
    return m_label ? m_label->hasCustomPosition() : m_storedOffset.has_value();
}

void NameTag::lookUpStoredPosition()
{
    const auto& positions = LabelsPositionsLoader::instance();
    // An object without a record makes its id when it is asked for it.
    m_storedOffset = positions.isEmpty() ? std::nullopt : positions.getLabelPosition(m_owner.guid());
}

QVector3D NameTag::anchor() const
{
    return m_owner.position() + m_offset;
}

float NameTag::aspect() const
{
    if (m_aspect < 0.0F)
        m_aspect = aspectOf(m_text, m_font);
    return m_aspect;
}

/** Whether the label would be off the screen even if each of its letters were as wide as a row is high. */
bool NameTag::isFarOff(const LabelPlacement::View& view, const QVector3D& anchorOnPlane) const
{
    const float row = ImageLabel::m_textRowHeightOnScreen;
    const float high = LabelPlacement::heightInPixels(row, NodeInformationToggle::m_labelLineHeight, m_multiline);
    const auto widest = static_cast<float>(m_text.size());
    const QPointF corner = LabelPlacement::cornerAbove(LabelPlacement::pixelOf(view, anchorOnPlane), widest, row,
                                                       LabelPlacement::rowsAbove);
    const QSizeF pixels(static_cast<double>(widest * high), static_cast<double>(high));
    return !LabelPlacement::coverage(corner, pixels).intersects(QRectF(QPointF(), view.screen));
}

std::optional<QRectF> NameTag::coverage(const LabelPlacement::View& view) const
{
    const auto anchorOnPlane = LabelPlacement::onPlane(view, anchor());
    if (!anchorOnPlane)
        return std::nullopt;
    const float row = ImageLabel::m_textRowHeightOnScreen;
    const bool moved = wasMoved();
    if (m_aspect < 0.0F && !moved && isFarOff(view, *anchorOnPlane))
        return std::nullopt;
    const float wide = aspect();
    const float high = LabelPlacement::heightInPixels(row, NodeInformationToggle::m_labelLineHeight, m_multiline);
    const QSizeF pixels(static_cast<double>(wide * high), static_cast<double>(high));
    const auto offset = m_label && m_label->hasCustomPosition() ? m_label->storedOffset() : m_storedOffset;
    const QPointF corner =
        moved && offset
            ? LabelPlacement::placedByOffset(view, *anchorOnPlane, *offset,
                                             pixels * static_cast<double>(LabelPlacement::metresPerPixel(view)))
                  .corner
            : LabelPlacement::cornerAbove(LabelPlacement::pixelOf(view, *anchorOnPlane), wide, row,
                                          LabelPlacement::rowsAbove);
    return LabelPlacement::coverage(corner, pixels);
}

} // namespace Torvik::View3d
