#pragma once

#include <QString>
#include <QVector>

namespace Torvik::View3d {

/** Long texts that others keep for a while. When they have let go, the room serves the next text: asking the system for
 *  half a megabyte with each measured point costs more than filling it. Whoever lets go on another thread does so under
 *  the lock under which room is asked for. */
class TextPool {
public:
    /** An empty text with the room of an earlier one, or without any. Good until the next call. */
    QString& room()
    {
        for (QString& text : m_texts) {
            if (text.isDetached()) {
                text.resize(0);
                return text;
            }
        }
        m_texts.append(QString());
        return m_texts.last();
    }
    int count() const { return m_texts.size(); }

private:
    QVector<QString> m_texts;
};

} // namespace Torvik::View3d
