#pragma once

#include <QColor>
#include <QFont>
#include <QMetaObject>
#include <QPointer>
#include <QRectF>
#include <QString>
#include <QVector3D>

#include <optional>

namespace Torvik::View3d {

class ImageLabel;
class Renderable;

namespace LabelPlacement {
struct View;
}

/** The label of an object as long as nobody looks at it: what it would say and where it would stand. A network has tens
 *  of thousands of names and a screen has room for some hundred, so the label itself (an entity of the scene) is made
 *  when LabelBoard gives it room, or when it is asked for, and what is told to the tag reaches it then. A label that
 * the board has made goes when it leaves the screen. Part of its object. Main thread only. */
class NameTag {
public:
    /** Order in which labels get room on the screen. */
    enum Rank { OfNode, OfSection, OfObservation, rankCount };

    NameTag(Renderable& owner, Rank rank);
    ~NameTag();
    NameTag(const NameTag&) = delete;
    NameTag& operator=(const NameTag&) = delete;

    /** Whether a text was ever set, an empty one as well. */
    bool isSet() const { return m_set; }
    QString text() const { return m_text; }
    void setText(const QString& text);
    void setFont(const QFont& font);
    void setMultiline(bool multiline);
    void setBackground(const QColor& background);
    /** Metres from the object's position to what the label points at. */
    void setOffset(const QVector3D& offset);
    void setVisible(bool visible);
    /** Its object tells of its own visibility by visibilityChanged() as well; a label that is there hears that. */
    void setOwnerVisible(bool visible);
    /** Only setOwnerVisible() counts, not the switch for all labels. */
    void leaveCommonSwitch() { m_commonSwitch = false; }
    /** As the label's height, which the next look at the screen sets anew. */
    void multiplyHeight(float factor);
    /** This one's object, which has only just been named, stands in place of another's: that one's label is this one's
     *  now, with its room and its order, and a finger that drags it keeps hold of it. */
    void takeOver(NameTag& before);

    /** Makes the label if there is none, and keeps it from now on. */
    ImageLabel* label();
    /** Null if there is none. */
    ImageLabel* liveLabel() const;

    // For the board.
    Rank rank() const { return m_rank; }
    bool wantsRoom() const;
    /** Pixels that the label covers, or would cover; nothing for one behind the camera. */
    std::optional<QRectF> coverage(const LabelPlacement::View& view) const;
    bool wasMoved() const;
    void lookUpStoredPosition();
    ImageLabel* makeLabel();
    /** The label goes, unless it was asked for. */
    void letLabelGo();
    void keepLabel() { m_kept = true; }

    int place = -1;         ///< on the board's list
    unsigned touched = 0;   ///< the board's count when a finger was last on the label
    unsigned lastDrawn = 0; ///< round of the board in which it had room

private:
    void enroll();
    void dressLabel();
    QVector3D anchor() const;
    float aspect() const;
    bool isFarOff(const LabelPlacement::View& view, const QVector3D& anchorOnPlane) const;

    static constexpr float unknown = -1.0F;

    Renderable& m_owner;
    QPointer<ImageLabel> m_label;
    QMetaObject::Connection m_ownerMoves;
    QString m_text;
    QFont m_font;
    QColor m_background;
    QVector3D m_offset;
    std::optional<QVector3D> m_storedOffset;
    Rank m_rank;
    mutable float m_aspect = unknown; ///< measured when it is asked for: measuring takes longer than all the rest
    bool m_set = false;
    bool m_blank = true;
    bool m_multiline = false;
    bool m_visible = true;
    bool m_ownerVisible = true;
    bool m_commonSwitch = true;
    bool m_kept = false;
};

} // namespace Torvik::View3d
