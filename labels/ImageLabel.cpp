#include "labels/ImageLabel.h"

#include "interaction/TouchControl.h"
#include "labels/LabelBoard.h"
#include "labels/LabelFace.h"
#include "labels/LabelsPositionsLoader.h"
#include "network/NodeInformationToggle.h"
#include "scene/Fuzzy.h"

#include <QFontMetrics>

#include <cmath>

namespace Torvik::View3d {

namespace {

constexpr QRgb background = qRgb(64, 135, 249);
/** Cosine of half the turn of the parent that counts as one. */
constexpr float sameRotation = 0.9999F;

bool isNone(const QPointF& position)
{
    const QPointF none = ImageLabel::noPosition();
    return Fuzzy::equal(position.x(), none.x()) && Fuzzy::equal(position.y(), none.y());
}

} // namespace

ImageLabel* ImageLabel::create(Renderable* renderable, SceneRoot* sceneRoot, QString const& text)
{
    auto* const label = new ImageLabel(nullptr, sceneRoot, text, renderable->guid());
    label->setParent(renderable);
    label->delayedInit();
    return label;
}

ImageLabel::ImageLabel(Renderable* parent, SceneRoot* /*sceneRoot*/, QString const& text, QString const& positionKey)
    : Label(parent, text)
    , m_backgroundColor(background)
    , m_positionKey(positionKey)
{
    adjustSizeToText();
}

ImageLabel::~ImageLabel()
{
    // Where it stands is stored already: by now the project that it belongs to may have been left.
    LabelBoard::instance().leave(this);
}

void ImageLabel::delayedInit()
{
    Label::delayedInit();
    m_enabledBeforeHide = isEnabled();
    LabelBoard::instance().enter(this);
    connect(&LabelsPositionsLoader::instance(), &LabelsPositionsLoader::labelsPositionsReset, this,
            &ImageLabel::updateLabelsPositions);
    followParent();
    // Also when the size of a pixel is known: a label moved before it was ever shown needs its own size.
    setScreenLineHeight(lineHeight());
    updateLabelsPositions();
    adjustSizeToText();
}

void ImageLabel::followParent()
{
    Renderable* const parent = parentRenderable();
    if (!parent)
        return;
    m_parentPosition = parent->position();
    m_parentRotation = parent->rotation();
    connect(parent->transform(), &Qt3DCore::QTransform::translationChanged, this, &ImageLabel::onParentTranslation);
    connect(parent->transform(), &Qt3DCore::QTransform::rotationChanged, this, &ImageLabel::onParentRotation);
    connect(parent, &Renderable::visibilityChanged, this, &ImageLabel::onParentVisibilityChanged);
}

void ImageLabel::goOverTo(Renderable* object)
{
    if (Renderable* const before = parentRenderable()) {
        disconnect(before->transform(), nullptr, this, nullptr);
        disconnect(before, &Renderable::visibilityChanged, this, nullptr);
    }
    setParent(object);
    Label::delayedInit();
    followParent();
}

TouchControlBase* ImageLabel::createTouchControl()
{
    auto* const control = new TouchControl(this, false);
    control->setMode(TouchControlBase::ScreenTranslation);
    control->allow(true);
    return control;
}

QString ImageLabel::guid()
{
    return parentRenderable() ? parentRenderable()->guid() : Renderable::guid();
}

QQuaternion ImageLabel::orientation() const
{
    return parentRenderable() ? parentRenderable()->orientation() : QQuaternion();
}

void ImageLabel::onParentTranslation(const QVector3D& translation)
{
    if (Fuzzy::equal(translation, m_parentPosition))
        return;
    m_parentPosition = translation;
    onSceneHeightChanged();
}

void ImageLabel::onParentRotation(const QQuaternion& rotation)
{
    if (!(std::abs(QQuaternion::dotProduct(rotation, m_parentRotation)) < sameRotation))
        return;
    m_parentRotation = rotation;
    onSceneHeightChanged();
}

float ImageLabel::lineHeight() const
{
    return LabelPlacement::heightInPixels(m_textRowHeightOnScreen, NodeInformationToggle::m_labelLineHeight,
                                          isMultiline());
}

void ImageLabel::onSceneHeightChanged()
{
    setScreenLineHeight(lineHeight());
    setPosition(noPosition(), LabelPlacement::rowsAbove);
    if (LabelBoard::instance().isHidden())
        return;
    showAfterMove();
    refreshFace();
}

void ImageLabel::showAfterMove()
{
    if (!m_hidden)
        return;
    m_hidden = false;
    setEnabled(m_enabledBeforeHide);
}

void ImageLabel::hideForMove()
{
    if (m_hidden)
        return;
    m_hidden = true;
    m_enabledBeforeHide = isEnabled();
    setEnabled(false);
}

void ImageLabel::show(bool shown)
{
    // What is switched while the view moves counts when it has come to rest.
    if (m_hidden)
        m_enabledBeforeHide = shown;
    else
        setEnabled(shown);
    faceIsStale();
}

void ImageLabel::setScreenLineHeight(float lineHeightPixels)
{
    const auto view = LabelBoard::instance().view();
    if (!view)
        return;
    m_screenHeightWorldPerPixel = LabelPlacement::metresPerPixel(*view);
    setHeight(lineHeightPixels * m_screenHeightWorldPerPixel);
}

QRect ImageLabel::fontMetricsRect() const
{
    return {QPoint(), m_textRect.size()};
}

bool ImageLabel::textBoundingBoxNotEmpty() const
{
    const QRect rect = fontMetricsRect();
    return rect.left() >= 0 && rect.top() >= 0 && rect.right() >= rect.left() && rect.bottom() >= rect.top();
}

void ImageLabel::adjustSizeToText()
{
    const QString blank = isMultiline() && !text().isEmpty() ? QStringLiteral(" ") : QString();
    m_textRect = text().isEmpty() ? QRect() : QFontMetrics(font()).boundingRect(blank + text() + blank);
    m_aspect = aspectOf(text(), font());
    if (textBoundingBoxNotEmpty())
        adjustWidthToHeight();
    else
        onParentVisibilityChanged(false);
    faceIsStale();
}

void ImageLabel::adjustWidthToHeight()
{
    m_width = m_aspect * height();
}

void ImageLabel::onTextChanged(QString /*text*/)
{
    adjustSizeToText();
}

void ImageLabel::onHeightChanged()
{
    adjustWidthToHeight();
}

void ImageLabel::onFontChanged()
{
    adjustSizeToText();
}

void ImageLabel::setBackgroundColor(QColor const& color)
{
    m_backgroundColor = color;
    faceIsStale();
}

void ImageLabel::onParentVisibilityChanged(bool visible)
{
    if (visible == m_mesh || (visible && !textBoundingBoxNotEmpty()))
        return;
    if (visible)
        addMesh();
    else
        removeMesh();
    emit visibilityChanged(visible);
}

void ImageLabel::addMesh()
{
    m_mesh = true;
    faceIsStale();
}

void ImageLabel::removeMesh()
{
    m_mesh = false;
    faceIsStale();
}

QSizeF ImageLabel::pixels() const
{
    const double perPixel = static_cast<double>(m_screenHeightWorldPerPixel);
    return perPixel > 0.0 ? QSizeF(static_cast<double>(width()), static_cast<double>(height())) / perPixel : QSizeF();
}

QRectF ImageLabel::coverage() const
{
    return LabelPlacement::coverage(m_screenPosition, pixels());
}

void ImageLabel::setPosition(QPointF position, float lift)
{
    const auto view = LabelBoard::instance().view();
    const Renderable* const parent = parentRenderable();
    const auto anchor =
        view && parent ? LabelPlacement::onPlane(*view, parent->position() + m_anchorOffset) : std::nullopt;
    if (!anchor)
        return;
    QPointF corner = position;
    if (!m_customPosition)
        corner = LabelPlacement::cornerAbove(LabelPlacement::pixelOf(*view, *anchor), m_aspect, m_textRowHeightOnScreen,
                                             lift);
    const QSizeF size(static_cast<double>(width()), static_cast<double>(height()));
    apply(*view, isNone(corner) ? LabelPlacement::placedByOffset(*view, *anchor, m_storedOffset, size)
                                : LabelPlacement::placedAt(*view, *anchor, corner, size));
}

void ImageLabel::apply(const LabelPlacement::View& view, const LabelPlacement::Placed& placed)
{
    m_screenPosition = placed.corner;
    m_storedOffset = placed.offset;
    m_center = placed.center;
    setTransformMatrix(view.eye + LabelPlacement::sceneVector(view, placed.center));
    drawPointer(LabelPlacement::sceneVector(view, placed.offset));
    placeFace(view);
}

QQuaternion ImageLabel::getFaceViewRotation(Qt3DCore::QEntity* entity) const
{
    const auto view = LabelBoard::instance().view();
    if (!view)
        return {};
    const QQuaternion facing = LabelPlacement::facing(*view);
    const auto* const renderable = qobject_cast<Renderable*>(entity);
    return renderable ? renderable->rotation().inverted() * facing : facing;
}

void ImageLabel::setTransformMatrix(QVector3D centerInWorld)
{
    QMatrix4x4 place;
    place.translate(centerInWorld);
    place.rotate(getFaceViewRotation(nullptr));
    if (const Renderable* const parent = parentRenderable())
        place = parent->transform()->matrix().inverted() * place;
    transform()->setMatrix(place, 0);
}

void ImageLabel::drawPointer(QVector3D vectorToInWorld)
{
    m_pointerVector = vectorToInWorld;
}

void ImageLabel::move(QVector3D screenDiff, MeasurementType /*flags*/)
{
    m_customPosition = true;
    setPosition(m_screenPosition + screenDiff.toPointF(), LabelPlacement::rowsAbove);
    LabelsPositionsLoader::instance().storeLabelPosition(m_positionKey, m_storedOffset);
    // Others get the room that it left, or lose that which it takes.
    LabelBoard::instance().schedule();
}

void ImageLabel::doubleTapped()
{
    m_customPosition = false;
    LabelsPositionsLoader::instance().removeLabelPosition(m_positionKey);
    setPosition(noPosition(), LabelPlacement::rowsAbove);
    LabelBoard::instance().schedule();
}

void ImageLabel::updateLabelsPositions()
{
    const auto stored = LabelsPositionsLoader::instance().getLabelPosition(m_positionKey);
    m_customPosition = stored.has_value();
    if (stored)
        m_storedOffset = *stored;
    setPosition(noPosition(), LabelPlacement::rowsAbove);
}

void ImageLabel::setOffset(QVector3D const& offset)
{
    m_anchorOffset = offset;
    setPosition(noPosition(), LabelPlacement::rowsAbove);
}

LabelFace* ImageLabel::face() const
{
    return m_face;
}

void ImageLabel::setFace(LabelFace* face)
{
    if (m_face == face)
        return;
    if (m_face)
        m_face->setEnabled(false);
    m_face = face;
    refreshFace();
}

void ImageLabel::faceIsStale()
{
    if (!m_face)
        return;
    if (!isShown())
        m_face->setEnabled(false);
    // Text, font and size mostly change together; they are painted once, at the next look at the screen.
    LabelBoard::instance().schedule();
}

void ImageLabel::refreshFace()
{
    if (!m_face)
        return;
    m_face->setEnabled(isShown());
    const auto view = LabelBoard::instance().view();
    if (!isShown() || !view)
        return;
    m_face->paint({text(), font(), textColor(), m_backgroundColor, isMultiline()},
                  LabelBoard::instance().texturePixels(pixels()));
    placeFace(*view);
}

void ImageLabel::placeFace(const LabelPlacement::View& view)
{
    if (!m_face)
        return;
    const auto& board = LabelBoard::instance();
    // Shifted by less than a pixel, so that letters stay as sharp as they were painted.
    const QPointF corner = coverage().topLeft();
    const QPointF shift = (board.onDevicePixels(corner) - corner) * static_cast<double>(m_screenHeightWorldPerPixel);
    const QVector3D toPixels(static_cast<float>(-shift.x()), static_cast<float>(-shift.y()), 0.0F);
    const float lines = LabelPlacement::heightInPixels(1.0F, NodeInformationToggle::m_labelLineHeight, true);
    const float line = isMultiline() && lines > 0.0F ? height() / lines : height();
    m_face->place(view, board.depth(), m_center + toPixels,
                  QSizeF(static_cast<double>(width()), static_cast<double>(height())), m_storedOffset - toPixels, line);
}

} // namespace Torvik::View3d
