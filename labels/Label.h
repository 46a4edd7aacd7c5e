#pragma once

#include "scene/KxView3dExport.h"
#include "scene/Renderable.h"

#include <QColor>
#include <QFont>
#include <QString>

namespace Torvik::View3d {

/** A text that the scene shows beside an object: what it says, its font, its height and whether it may be seen. How it
 * is drawn is left to subclasses. Shown only if both the switch for all labels (GlobalNav) and its own are on. Belongs
 * to its object in the scene, but is made without it: delayedInit() runs when it hangs there. Main thread only. */
class KXVIEW3D_EXPORT Label : public Renderable {
    Q_OBJECT
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged)

public:
    Label(Renderable* parent, QString const& text);

    QString renderableType() const override;
    virtual void delayedInit();

    QString text() const { return m_text; }
    void setText(QString const& text);
    QFont font() const { return m_font; }
    void setFont(QFont const& font);
    /** Metres in the scene. */
    float width() const { return m_width; }
    float height() const { return m_height; }
    /** Stores on a change only (fuzzy rule). */
    void setHeight(float height);
    bool isVisible() const { return m_visible; }
    void setVisible(bool visible);
    bool isMultiline() const { return m_multiline; }
    void setMultiline(bool multiline) { m_multiline = multiline; }
    QColor textColor() const { return m_textColor; }
    /** The object that the label belongs to. */
    Renderable* parentRenderable() const { return m_parentRenderable; }

    static QFont defaultFont();

public slots:
    virtual void onTextChanged(QString text) = 0;
    virtual void onHeightChanged() = 0;
    virtual void onFontChanged() = 0;

signals:
    void textChanged(QString text);
    void fontChanged();
    void heightChanged();
    void visibleChanged(bool visible);

protected:
    /** From now on the switch for all labels has no say. */
    void leaveCommonSwitch();
    /** Called when the two switches ask for another state. */
    virtual void show(bool shown);

    float m_width = 0.0F;

private:
    QColor m_textColor;
    Renderable* m_parentRenderable;
    float m_height = 1.0F;
    QFont m_font;
    QString m_text;
    bool m_visible = true;
    bool m_multiline = false;
    bool m_commonSwitch = true;
};

} // namespace Torvik::View3d
