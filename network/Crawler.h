#pragma once

#include "scene/KxView3dExport.h"
#include "scene/Renderable.h"

#include <QList>
#include <QPointer>

namespace Torvik::View3d {

class Section;

/** The inspection vehicle: a small model in the pipe of the active section, at the distance counter. It has no data of
 *  its own and asks its section where it stands, in scene coordinates. Two switches, each by itself: it shows while
 *  active, and it moves while active and in a section. Made by QML; the section is not owned. Main thread only. */
class KXVIEW3D_EXPORT Crawler : public Renderable {
    Q_OBJECT
    Q_PROPERTY(Torvik::View3d::Section* section READ section WRITE attachToSection NOTIFY sectionChanged)
    Q_PROPERTY(bool active READ active WRITE setActive NOTIFY activeChanged)

public:
    explicit Crawler(Qt3DCore::QEntity* parent = nullptr);
    /** Builds the model; the constructor has done it, and there is only one. */
    void init3d();

    QString renderableType() const override;
    QQuaternion orientation() const override;

    bool active() const { return m_active; }
    void setActive(bool active);

    Section* section() const;
    /** Drives in this section from now on; null leaves it where it stands, with an error in the log. The section that
     *  it is in already cuts it off from that section's signals, until another one comes. Emits nothing. */
    void attachToSection(Section* section);
    /** Only forgets the section. */
    void detachFromSection();
    void disconnectSignals();

public slots:
    void refreshPosition();

signals:
    void activeChanged();
    void sectionChanged(Torvik::View3d::Section* section);

private:
    void addBody();

    bool m_active = false;
    Qt3DCore::QTransform* m_coneTransform = nullptr;
    QPointer<Section> m_section;
    QList<QMetaObject::Connection> m_connections; ///< to the section
    Qt3DCore::QEntity* m_modelEntity = nullptr;
};

} // namespace Torvik::View3d
