#include "plans/BackgroundImagePdf.h"

#include "domain/boundary/CLogger.h"
#include "plans/PlanFiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTimer>

#include <csignal>

namespace Torvik::View3d {

namespace {

constexpr unsigned errorGroup = 0x150200U;
/** How long a converter may take to end by itself when it was told to. */
constexpr int patienceMs = 2000;
constexpr int deathMs = 1000;
const QString pdfExtension = QStringLiteral(".pdf");

void log(Logging::LogLevel level, const QString& message)
{
    Logging::CLogger::logMessage(level, QStringLiteral("Torvik::BackgroundImagePdf"), message);
}

/** Without a place for the picture the converter could only fail, and the PDF would be gone. */
bool hasPlaceForPicture(const QString& projectPath, const QString& folder)
{
    return !projectPath.isEmpty() && QFileInfo(projectPath).isDir() && QDir().mkpath(folder) &&
           QFileInfo(folder).isWritable();
}

} // namespace

BackgroundImagePdf::BackgroundImagePdf(const QString& path, const QString& projectPath, SceneRoot* scene)
    : BackgroundImage(path, scene)
    , m_projectPath(projectPath)
    , m_path(path)
{
    setObjectName(QStringLiteral("Background Plan - PdfImage"));
    setFullPath(QString());
}

BackgroundImagePdf::~BackgroundImagePdf()
{
    waitForReading();
    if (m_process) {
        m_process->disconnect(this);
        if (m_process->state() != QProcess::NotRunning) {
            m_process->kill();
            m_process->waitForFinished(deathMs);
        }
        delete m_process;
    }
    if (m_converted)
        giveBackPictureBefore(true);
    else
        onConversionFailed();
}

QString BackgroundImagePdf::renderableType() const
{
    return QStringLiteral("pdfimagebackground");
}

Base::CErrorCode BackgroundImagePdf::createErrorCode(Error error)
{
    return Base::CErrorCode(unsigned(error) | errorGroup);
}

QString BackgroundImagePdf::fullPathForImageInProjectDirectory(const QString& pdfPath, const QString& projectPath,
                                                               bool withoutExtension)
{
    const int slash = pdfPath.lastIndexOf(QLatin1Char('/'));
    QString name = slash < 0 ? QString() : pdfPath.mid(slash + 1);
    const int extension = name.lastIndexOf(pdfExtension, -1, Qt::CaseInsensitive);
    if (extension >= 0)
        name.replace(extension, pdfExtension.size(), QStringLiteral(".png"));
    if (withoutExtension)
        name.chop(pdfExtension.size());
    return projectPath + Base::CFileSystemNames::documentationPathPart() + name;
}

void BackgroundImagePdf::load()
{
    if (m_path.endsWith(pdfExtension))
        convertPdfToPng(m_path, m_projectPath);
    else
        createBackgroundFromPdf(fullPath(), fullPath(), m_projectPath);
}

void BackgroundImagePdf::convertPdfToPng(const QString& pdfPath, const QString& projectPath)
{
    m_png = fullPathForImageInProjectDirectory(pdfPath, projectPath, false);
    const QString root = fullPathForImageInProjectDirectory(pdfPath, projectPath, true);
    m_command = QStringLiteral("pdftoppm -r 80 -png -singlefile \"%1\" \"%2\"").arg(pdfPath, root);
    if (m_process) {
        m_process->terminate();
        delete m_process;
    }
    if (!hasPlaceForPicture(projectPath, QFileInfo(m_png).path())) {
        log(Logging::LogWarning, QStringLiteral("No place for the picture of %1: %2").arg(pdfPath, m_png));
        tellConverterProblem();
        return;
    }
    putPictureBeforeAside();
    if (QFile::exists(m_png)) {
        tellConverterProblem();
        return;
    }
    m_pngIsOurs = true;
    m_process = new QProcess;
    connect(m_process, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), this,
            [this](int exitCode, QProcess::ExitStatus status) {
                onConverterFinished(exitCode, status == QProcess::CrashExit);
            });
    connect(m_process, &QProcess::errorOccurred, this,
            [this](QProcess::ProcessError error) { onConverterError(error == QProcess::Crashed); });
    // As a list: what a name holds is never split.
    m_process->start(QStringLiteral("pdftoppm"),
                     {QStringLiteral("-r"), QStringLiteral("80"), QStringLiteral("-png"), QStringLiteral("-singlefile"),
                      pdfPath, root},
                     QIODevice::ReadWrite);
}

void BackgroundImagePdf::tellConverterProblem()
{
    QTimer::singleShot(0, this, [this] { emit pdfConverterProblem(createErrorCode(ConverterFailed)); });
}

void BackgroundImagePdf::putPictureBeforeAside()
{
    if (!QFile::exists(m_png))
        return;
    // By this name it is found again when the program ends before the plan is taken.
    m_pictureBefore = PlanFiles::asideForConversion(m_png);
    if (QFile::exists(m_pictureBefore))
        m_pictureBefore = PlanFiles::freeName(m_png, QStringLiteral(".before-"));
    const QString problem = PlanFiles::move(m_png, m_pictureBefore);
    if (problem.isEmpty())
        return;
    log(Logging::LogWarning, problem);
    m_pictureBefore.clear();
}

void BackgroundImagePdf::onConverterFinished(int exitCode, bool crashed)
{
    if (m_cancelled) {
        // It was done before it heard of the cancellation.
        m_cancelled = false;
        onConversionFailed();
        emit backgroundLoadingWasCancelled();
        return;
    }
    if (crashed) {
        onConversionFailed();
        if (exitCode != SIGTERM)
            log(Logging::LogError,
                QStringLiteral("Failed to execute PDF to PNG conversion command (exit code was %1): ").arg(exitCode) +
                    m_command);
        emit pdfConverterProblem(createErrorCode(ConverterFailed));
        return;
    }
    const QString said = QString::fromLocal8Bit(m_process->readAllStandardError()).simplified();
    if (exitCode != 0)
        log(Logging::LogWarning, QStringLiteral("pdftoppm (exit code %1): %2").arg(exitCode).arg(said));
    m_converted = true;
    if (!QFile::remove(m_path))
        log(Logging::LogError, QStringLiteral("Failed to remove pdf file: \"%1\"").arg(m_path));
    createBackgroundFromPdf(m_path, m_png, m_projectPath);
}

void BackgroundImagePdf::onConverterError(bool crashed)
{
    if (m_cancelled) {
        m_cancelled = false;
        onConversionFailed();
        // What is left to tell of the process is its death, which was asked for.
        disposeOfProcess();
        emit backgroundLoadingWasCancelled();
    } else if (!crashed) {
        onConversionFailed();
        emit pdfConverterProblem(createErrorCode(ConverterFailed));
    }
    // Of a crash the end of the process tells.
}

void BackgroundImagePdf::createBackgroundFromPdf(const QString& pdfPath, const QString& pngPath,
                                                 const QString& projectPath)
{
    m_decoding = true;
    createBackground(pngPath, fullPathForImageInProjectDirectory(pdfPath, projectPath, false));
}

void BackgroundImagePdf::cancelFileLoading()
{
    if (!m_process)
        return;
    if (m_process->state() == QProcess::NotRunning) {
        disposeOfProcess();
        if (m_decoding)
            emit backgroundLoadingWasCancelled();
        return;
    }
    m_cancelled = true;
    m_process->terminate();
    QTimer::singleShot(patienceMs, m_process, &QProcess::kill);
}

void BackgroundImagePdf::disposeOfProcess()
{
    if (!m_process)
        return;
    m_process->disconnect(this);
    m_process->deleteLater();
    m_process.clear();
}

void BackgroundImagePdf::logUnreadable(const QString& picturePath, const QString& reason)
{
    log(Logging::LogWarning, QStringLiteral("Failed to load image from path: ") + picturePath);
    log(Logging::LogTrace, reason);
}

void BackgroundImagePdf::onPictureReady()
{
    m_decoding = false;
}

void BackgroundImagePdf::onTaken()
{
    if (!m_pictureBefore.isEmpty())
        QFile::remove(m_pictureBefore);
    m_pictureBefore.clear();
    m_pngIsOurs = false;
}

void BackgroundImagePdf::endAfterFailure(PictureReader::Outcome outcome)
{
    m_decoding = false;
    disposeOfProcess();
    giveBackPictureBefore(outcome == PictureReader::Outcome::TooLarge);
}

void BackgroundImagePdf::onConversionFailed()
{
    // The PDF is still there: half a picture is of no use to anybody.
    if (m_pngIsOurs && m_pictureBefore.isEmpty())
        QFile::remove(m_png);
    giveBackPictureBefore(false);
    m_pngIsOurs = false;
}

void BackgroundImagePdf::giveBackPictureBefore(bool keepNew)
{
    if (m_pictureBefore.isEmpty())
        return;
    // The PDF is gone: its picture is all that is left of it.
    if (keepNew)
        PlanFiles::move(m_png, PlanFiles::freeName(m_png));
    else
        QFile::remove(m_png);
    PlanFiles::move(m_pictureBefore, m_png);
    m_pictureBefore.clear();
}

} // namespace Torvik::View3d
