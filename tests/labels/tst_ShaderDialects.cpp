#include "common/SceneTest.h"
#include <QDir>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLShaderProgram>
#include <QSurfaceFormat>
#include <QUrl>
#include <Qt3DRender/QShaderProgram>
#include <QtTest>

#include <memory>

namespace {

QSurfaceFormat openGlEs2()
{
    QSurfaceFormat format;
    format.setRenderableType(QSurfaceFormat::OpenGLES);
    format.setVersion(2, 0);
    return format;
}

QSurfaceFormat coreProfile()
{
    QSurfaceFormat format;
    format.setRenderableType(QSurfaceFormat::OpenGL);
    format.setVersion(3, 2);
    format.setProfile(QSurfaceFormat::CoreProfile);
    return format;
}

/** A dialect's folder among the sources: the same path in the resources holds the shaders of Qt 3D's libraries as well.
 */
QDir sources(const QString& dialect)
{
    return {QStringLiteral(KX_SHADERS "/") + dialect};
}

/** Names of a dialect's programs: each has a vertex and a fragment shader. */
QStringList programs(const QString& dialect)
{
    QStringList names;
    const auto files = sources(dialect).entryInfoList({QStringLiteral("*.vert")}, QDir::Files, QDir::Name);
    for (const auto& file : files)
        names << file.completeBaseName();
    return names;
}

QByteArray source(const QString& dialect, const QString& name, const char* ending)
{
    return Qt3DRender::QShaderProgram::loadSource(
        QUrl(QStringLiteral("qrc:/shaders/%1/%2.%3").arg(dialect, name, QLatin1String(ending))));
}

} // namespace

/** The scene's shaders under the drivers that they are written for. */
class tst_ShaderDialects : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void everyShaderHasItsPartner_data();
    void everyShaderHasItsPartner();
    void aProgramIsCompiledAndLinked_data();
    void aProgramIsCompiledAndLinked();

private:
    bool use(const QSurfaceFormat& format);

    QOffscreenSurface m_surface;
    std::unique_ptr<QOpenGLContext> m_context;
};

void tst_ShaderDialects::initTestCase()
{
    m_surface.create();
}

bool tst_ShaderDialects::use(const QSurfaceFormat& format)
{
    m_context = std::make_unique<QOpenGLContext>();
    m_context->setFormat(format);
    return m_context->create() && m_context->makeCurrent(&m_surface);
}

void tst_ShaderDialects::everyShaderHasItsPartner_data()
{
    QTest::addColumn<QString>("dialect");
    QTest::newRow("es2") << "es2";
    QTest::newRow("gl3") << "gl3";
}

void tst_ShaderDialects::everyShaderHasItsPartner()
{
    QFETCH(QString, dialect);

    const QStringList names = programs(dialect);

    QVERIFY(!names.isEmpty());
    QCOMPARE(sources(dialect).entryList(QDir::Files).size(), 2 * names.size());
    for (const QString& name : names)
        QVERIFY2(QFile::exists(QStringLiteral(":/shaders/%1/%2.frag").arg(dialect, name)), qPrintable(name));
}

void tst_ShaderDialects::aProgramIsCompiledAndLinked_data()
{
    QTest::addColumn<QString>("dialect");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QSurfaceFormat>("format");
    const auto add = [](const char* driver, const QSurfaceFormat& format, const char* dialect) {
        const auto names = programs(dialect);
        for (const auto& name : names)
            QTest::addRow("%s, %s of %s", driver, qPrintable(name), dialect) << QString(dialect) << name << format;
    };
    add("OpenGL ES 2", openGlEs2(), "es2");
    add("the desktop's default", QSurfaceFormat::defaultFormat(), "es2");
    add("core profile", coreProfile(), "gl3");
    // The effects that lie on top of everything have this text only, whatever the profile.
    add("core profile", coreProfile(), "es2");
}

void tst_ShaderDialects::aProgramIsCompiledAndLinked()
{
    QFETCH(QString, dialect);
    QFETCH(QString, name);
    QFETCH(QSurfaceFormat, format);
    if (!use(format)) {
        if (qEnvironmentVariableIsSet("KX_WITHOUT_ES2"))
            QSKIP("This driver makes no such context.");
        QFAIL("This driver makes no such context; KX_WITHOUT_ES2 leaves these tests out.");
    }
    QCOMPARE(m_context->isOpenGLES(), format.renderableType() == QSurfaceFormat::OpenGLES);
    if (format.profile() == QSurfaceFormat::CoreProfile)
        QCOMPARE(m_context->format().profile(), QSurfaceFormat::CoreProfile);

    QOpenGLShaderProgram program;
    QVERIFY2(program.addShaderFromSourceCode(QOpenGLShader::Vertex, source(dialect, name, "vert")),
             qPrintable(program.log()));
    QVERIFY2(program.addShaderFromSourceCode(QOpenGLShader::Fragment, source(dialect, name, "frag")),
             qPrintable(program.log()));
    QVERIFY2(program.link(), qPrintable(program.log()));
}

KX_SCENE_TEST_MAIN(tst_ShaderDialects)
#include "tst_ShaderDialects.moc"
