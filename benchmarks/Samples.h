#pragma once

#include <QVector>

#include <algorithm>

namespace Torvik::Bench {

/** Many spans of one kind in the order in which they were taken, in milliseconds. */
class Samples {
public:
    void add(double ms) { m_values.append(ms); }
    int count() const { return m_values.size(); }
    double worst() const { return quantile(m_values, 1.0); }
    double median() const { return quantile(m_values, 0.5); }
    /** Not exceeded by 99 of 100. */
    double percentile99() const { return quantile(m_values, 0.99); }
    double mean() const
    {
        double sum = 0.0;
        for (const double value : m_values)
            sum += value;
        return m_values.isEmpty() ? 0.0 : sum / m_values.size();
    }
    /** Median of `count` samples from `first` on: one alone says more about the machine than about its place. */
    double medianAt(int first, int count) const { return quantile(m_values.mid(first, count), 0.5); }

private:
    static double quantile(QVector<double> values, double share)
    {
        if (values.isEmpty())
            return 0.0;
        const int index = std::min(static_cast<int>(share * values.size()), values.size() - 1);
        std::nth_element(values.begin(), values.begin() + index, values.end());
        return values[index];
    }

    QVector<double> m_values;
};

} // namespace Torvik::Bench
