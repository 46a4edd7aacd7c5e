#pragma once

#include "plans/BackgroundImage.h"

#include <QPointer>

class QProcess;

namespace Torvik::View3d {

/** The first page of a PDF as a picture under the network. The command pdftoppm makes a PNG of it in the project's
 *  documentation folder; the PDF is deleted, and from then on the plan is that PNG. A file of the PNG's name that was
 *  there before is kept until the plan is taken, and is back when it never is; the new PNG, all that is left of the PDF
 *  then, stays under a name of its own. */
class KXVIEW3D_EXPORT BackgroundImagePdf : public BackgroundImage {
    Q_OBJECT

public:
    enum Error { Unreadable = 1, ConverterFailed = 2 };

    /** @param projectPath  ends in a separator */
    BackgroundImagePdf(const QString& path, const QString& projectPath, SceneRoot* scene);
    ~BackgroundImagePdf() override;

    QString renderableType() const override;
    void load() override;
    void cancelFileLoading() override;
    void onTaken() override;

    static Base::CErrorCode createErrorCode(Error error);
    /** Where the picture of a PDF comes to stand. A path without "/" has no name. */
    static QString fullPathForImageInProjectDirectory(const QString& pdfPath, const QString& projectPath,
                                                      bool withoutExtension);

protected:
    void logUnreadable(const QString& picturePath, const QString& reason) override;
    void onPictureReady() override;
    void endAfterFailure(PictureReader::Outcome outcome) override;

private:
    void convertPdfToPng(const QString& pdfPath, const QString& projectPath);
    void createBackgroundFromPdf(const QString& pdfPath, const QString& pngPath, const QString& projectPath);
    void onConverterFinished(int exitCode, bool crashed);
    void onConverterError(bool crashed);
    void disposeOfProcess();
    void putPictureBeforeAside();
    void tellConverterProblem();
    void onConversionFailed();
    void giveBackPictureBefore(bool keepNew);

    QPointer<QProcess> m_process;
    bool m_cancelled = false;
    bool m_decoding = false;
    /** What stands at m_png came from the converter, whole or not, and no plan that was taken is made of it yet. */
    bool m_pngIsOurs = false;
    bool m_converted = false;
    QString m_command;
    QString m_projectPath;
    QString m_path;
    // Files; empty where nothing was in the way.
    QString m_png;
    QString m_pictureBefore;
};

} // namespace Torvik::View3d
