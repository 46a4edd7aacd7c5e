#include "host/map/TileAddress.h"

#include <QNetworkReply>
#include <QNetworkRequest>

namespace Torvik::Map {

namespace {
constexpr int patienceMs = 10000;
/** Levels that a picture is enlarged by at most; more of it would be a few pixels. */
constexpr int mostLevelsUp = 6;
} // namespace

TileAddress::TileAddress(const QString& address, QObject* parent)
    : QObject(parent)
    , m_address(address)
    , m_network(this)
{
    while (m_address.endsWith(QLatin1Char('/')))
        m_address.chop(1);
    if (!m_address.contains(QLatin1String("{z}")))
        m_address += QLatin1String("/{z}/{x}/{y}.png");
    m_network.setTransferTimeout(patienceMs);
}

bool TileAddress::isUsable(const QString& address)
{
    const QUrl url = TileAddress(address).urlOf({});
    return url.isValid() && !url.host().isEmpty() &&
           (url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https"));
}

QUrl TileAddress::urlOf(const TileKey& key) const
{
    QString text = m_address;
    text.replace(QLatin1String("{z}"), QString::number(key.z));
    text.replace(QLatin1String("{x}"), QString::number(key.x));
    text.replace(QLatin1String("{y}"), QString::number(key.y));
    return QUrl(text);
}

void TileAddress::request(const TileKey& key, const TileServer::Answer& answer)
{
    fetch(key, key, answer);
}

void TileAddress::fetch(const TileKey& from, const TileKey& wanted, const TileServer::Answer& answer)
{
    QNetworkRequest request(urlOf(from));
    request.setHeader(QNetworkRequest::UserAgentHeader, QStringLiteral("kxviewer"));
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    QNetworkReply* reply = m_network.get(request);
    connect(reply, &QNetworkReply::finished, this, [this, reply, from, wanted, answer] {
        reply->deleteLater();
        const bool answered = reply->error() == QNetworkReply::NoError;
        const QByteArray picture = answered ? reply->readAll() : QByteArray();
        if (!picture.isEmpty()) {
            answer(cutOut(picture, from, wanted));
            return;
        }
        const bool noSuchTile = answered || reply->error() == QNetworkReply::ContentNotFoundError ||
                                reply->error() == QNetworkReply::ContentGoneError;
        if (noSuchTile && from.z > 0 && wanted.z - from.z < mostLevelsUp) {
            fetch(from.parent(), wanted, answer);
            return;
        }
        if (!noSuchTile && !m_told) {
            m_told = true;
            emit problem(QStringLiteral("no map: %1").arg(reply->errorString()));
        }
        answer({});
    });
}

} // namespace Torvik::Map
