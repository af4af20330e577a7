#include "ui/Sentences.h"

#include <QCoreApplication>
#include <QHash>
#include <QLocale>
#include <QRegularExpression>
#include <algorithm>
#include <optional>

namespace vantro::ui {
namespace {

const QString separator = QStringLiteral(": ");

/// A sentence with places for names and numbers.
struct Pattern {
    QRegularExpression expression;
    const char* key;
    qsizetype length; ///< of its own words
};

struct Catalog {
    QHash<QString, const char*> wholes;
    std::vector<Pattern> patterns; ///< those with the most words of their own first

    Catalog();
};

const QRegularExpression& places() {
    static const QRegularExpression expression(QStringLiteral("%(\\d)"));
    return expression;
}

Catalog::Catalog() {
    for (const auto* key : knownSentences()) {
        const auto text = QString::fromUtf8(key);
        if (!text.contains(places())) {
            wholes.insert(text, key);
            continue;
        }
        auto expression = QRegularExpression::escape(text);
        expression.replace(QRegularExpression(QStringLiteral("\\\\%\\d")), QStringLiteral("(.+?)"));
        patterns.push_back({QRegularExpression(QRegularExpression::anchoredPattern(expression),
                                               QRegularExpression::DotMatchesEverythingOption),
                            key, QString(text).remove(places()).size()});
    }
    std::ranges::stable_sort(patterns, std::greater(), &Pattern::length);
}

const Catalog& catalog() {
    static const Catalog known;
    return known;
}

QString translated(const QString& text);

/// The pattern's translation with what was found in its places.
QString filled(const QString& pattern, const QRegularExpressionMatch& found) {
    QString result;
    qsizetype end = 0;
    for (auto each = places().globalMatch(pattern); each.hasNext();) {
        const auto place = each.next();
        result.append(QStringView(pattern).mid(end, place.capturedStart() - end));
        result += translated(found.captured(place.captured(1).toInt()));
        end = place.capturedEnd();
    }
    return result.append(QStringView(pattern).mid(end));
}

QString inLanguage(const char* key) {
    return QCoreApplication::translate("Sentences", key);
}

std::optional<QString> lookUp(const QString& text) {
    if (const auto* key = catalog().wholes.value(text))
        return inLanguage(key);
    if (text.endsWith(u'.'))
        if (const auto* key = catalog().wholes.value(text.chopped(1)))
            return inLanguage(key) + u'.';
    for (const auto& pattern : catalog().patterns)
        if (const auto found = pattern.expression.match(text); found.hasMatch())
            return filled(inLanguage(pattern.key), found);
    return {};
}

/// Part by part; sentences with a colon of their own are taken whole.
QString translated(const QString& text) {
    static const QRegularExpression number(QStringLiteral("^-?\\d+\\.\\d+$"));
    if (text.contains(number))
        return localNumber(text.toStdString());
    const auto parts = text.split(separator);
    QStringList result;
    for (qsizetype first = 0; first < parts.size();) {
        auto count = parts.size() - first;
        std::optional<QString> found;
        while (!(found = lookUp(parts.mid(first, count).join(separator))) && count > 1)
            --count;
        result.append(found.value_or(parts[first]));
        first += count;
    }
    return result.join(separator);
}

} // namespace

QString sentence(const std::string& text) {
    return translated(QString::fromStdString(text));
}

QString localNumber(const std::string& text) {
    return QString::fromStdString(text).replace(u'.', QLocale().decimalPoint());
}

} // namespace vantro::ui
