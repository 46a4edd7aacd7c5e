#pragma once

// Single class headers only: headers of whole modules cost more than they save.
#include <QHash>
#include <QMatrix4x4>
#include <QObject>
#include <QQuaternion>
#include <QSharedPointer>
#include <QString>
#include <QTimer>
#include <QVariant>
#include <QVector3D>
#include <QVector>
#include <Qt3DCore/QEntity>
#include <Qt3DCore/QTransform>
#include <Qt3DRender/QCamera>
#include <Qt3DRender/QMaterial>
