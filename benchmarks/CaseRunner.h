#pragma once

#include "benchmarks/FigureList.h"
#include "benchmarks/Stage.h"

#include <QString>
#include <QVector>

namespace Torvik::Bench {

/** A measurement that is made in a process of its own, which ends without taking the scene down. */
struct BenchCase {
    QString name;
    QString title;
    FigureList (*measure)(Stage::Kind);
    bool inWindow;
    bool headless;
};

/** Makes the measurements that the command line asks for, all without `--only`, and prints a table of each. The exit
 *  status: 1 when a bound is missed. */
int runCases(int& argc, char** argv, const QString& description, const QVector<BenchCase>& cases);

} // namespace Torvik::Bench
