#pragma once

#include <QByteArray>
#include <QString>

#include <optional>
#include <vector>

/// The figures of one run: those with a target, and others that explain them. GUI thread of the program that measures.
class Report final
{
public:
    /// A figure that a target stands for, by its name in the table of targets; unknown names are a programming error.
    void add(const QString &name, double value);

    /// A figure without a target.
    void addInformation(const QString &name, const QString &title, const QString &unit, double value);

    /// A figure that could not be measured: it appears without a value, and the run has failed.
    void addFailure(const QString &name, const QString &reason);
    [[nodiscard]] bool hasFailures() const;

    /// Every figure that has a target, in the order of the table.
    [[nodiscard]] static std::vector<QString> targetNames();

    /// For people.
    [[nodiscard]] QString table() const;
    /// A list of {name, value, unit, must, aim, met}; null where there is none.
    [[nodiscard]] QByteArray json() const;

private:
    struct Row
    {
        QString name;
        QString title;
        QString unit;
        std::optional<double> value;
        std::optional<double> must;
        std::optional<double> aim;
        QString failure;

        [[nodiscard]] std::optional<bool> met() const;
    };

    [[nodiscard]] static Row rowOf(const QString &name);

    std::vector<Row> m_rows;
};
