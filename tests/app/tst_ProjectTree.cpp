#include "common/TestProject.h"
#include "host/app/ProjectTree.h"
#include "host/domain/BulkWriter.h"

#include <QElapsedTimer>
#include <QSignalSpy>

using Kx::Test::TestProject;
using Torvik::Viewer::ProjectTree;

/** The tree of a project as lines that fold and unfold. */
class tst_ProjectTree : public QObject {
    Q_OBJECT

private slots:
    void withoutAProjectItIsEmpty();
    void pipesHoldInspectionsAndTheseObservations();
    void foldingTakesAllBelowAway();
    void whatWasUnfoldedStaysSo();
    void whatHasNothingBelowCannotBeUnfolded();
    void tenThousandNodesUnfoldAtOnce();

private:
    static QStringList lines(const ProjectTree& tree)
    {
        QStringList texts;
        for (int i = 0; i < tree.rowCount(); ++i) {
            const QModelIndex line = tree.index(i);
            texts << QString(line.data(ProjectTree::DepthRole).toInt(), '.') + line.data().toString();
        }
        return texts;
    }
    static int rowOf(const ProjectTree& tree, const QString& text)
    {
        for (int i = 0; i < tree.rowCount(); ++i) {
            if (tree.index(i).data().toString() == text)
                return i;
        }
        return -1;
    }
};

void tst_ProjectTree::withoutAProjectItIsEmpty()
{
    ProjectTree tree;
    tree.setProject({});
    QCOMPARE(tree.rowCount(), 0);
    tree.toggle(0);
    tree.toggle(-1);
}

void tst_ProjectTree::pipesHoldInspectionsAndTheseObservations()
{
    TestProject project;
    const auto a = project.addNode("S1");
    const auto pipe = project.addSection("H1", a, project.addNode("S2"));
    const auto inspection = project.addInspection(pipe, {}, 1, {{"INS_Key", "2026-1"}});
    project.addObservation(inspection, "BAJ", 12.5);
    project.addLateral("L1", pipe);
    ProjectTree tree;

    tree.setProject(project.project());
    QCOMPARE(lines(tree), QStringList({"project", ".Nodes (2)", ".Sections (1)", ".Laterals (1)"}));

    tree.toggle(rowOf(tree, "Sections (1)"));
    tree.toggle(rowOf(tree, "H1"));
    tree.toggle(rowOf(tree, "Inspection 2026-1"));
    QCOMPARE(lines(tree), QStringList({"project", ".Nodes (2)", ".Sections (1)", "..H1", "...Inspection 2026-1",
                                       "....12.50  BAJ", ".Laterals (1)"}));
    QCOMPARE(tree.index(4).data(ProjectTree::ObjectIdRole).toString(), inspection->id());
}

void tst_ProjectTree::foldingTakesAllBelowAway()
{
    TestProject project;
    const auto pipe = project.addSection("H1", project.addNode("S1"), {});
    project.addInspection(pipe);
    ProjectTree tree;
    tree.setProject(project.project());
    tree.toggle(2);
    tree.toggle(3);
    QCOMPARE(tree.rowCount(), 6);
    QSignalSpy removed(&tree, &ProjectTree::rowsRemoved);

    tree.toggle(2);

    QCOMPARE(removed.count(), 1);
    QCOMPARE(lines(tree), QStringList({"project", ".Nodes (1)", ".Sections (1)", ".Laterals (0)"}));
    QVERIFY(!tree.index(2).data(ProjectTree::UnfoldedRole).toBool());
}

void tst_ProjectTree::whatWasUnfoldedStaysSo()
{
    TestProject project;
    project.addNode("S1");
    ProjectTree tree;
    tree.setProject(project.project());
    tree.toggle(1);
    project.addNode("S2");

    tree.refresh();

    QCOMPARE(lines(tree), QStringList({"project", ".Nodes (2)", "..S1", "..S2", ".Sections (0)", ".Laterals (0)"}));
}

void tst_ProjectTree::whatHasNothingBelowCannotBeUnfolded()
{
    TestProject project;
    project.addNode("S1");
    ProjectTree tree;
    tree.setProject(project.project());
    const int before = tree.rowCount();

    tree.toggle(2);

    QVERIFY(!tree.index(2).data(ProjectTree::FoldableRole).toBool());
    QCOMPARE(tree.rowCount(), before);
}

void tst_ProjectTree::tenThousandNodesUnfoldAtOnce()
{
    constexpr int count = 10000;
    // Shorter than what a user takes for waiting, with room for a busy machine.
    constexpr int longestMs = 500;
    TestProject project;
    Torvik::Database::BulkWriter writer;
    QVERIFY(writer.begin(project.path()));
    for (int i = 0; i < count; ++i)
        QVERIFY(writer.insert(Torvik::Database::NodeObjectType, {}, {{"OBJ_Key", QString("S%1").arg(i)}}));
    QVERIFY(writer.commit());
    project.reopen();
    ProjectTree tree;
    QElapsedTimer clock;

    clock.start();
    tree.setProject(project.project());
    tree.toggle(1);
    QCOMPARE(tree.rowCount(), count + 4);
    tree.refresh();
    tree.toggle(1);

    QVERIFY2(clock.elapsed() < longestMs, qPrintable(QString::number(clock.elapsed())));
    QCOMPARE(tree.rowCount(), 4);
}

QTEST_GUILESS_MAIN(tst_ProjectTree)
#include "tst_ProjectTree.moc"
