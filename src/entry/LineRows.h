#pragma once

#include "services/Numeric.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <stdexcept>
#include <vector>

namespace gm {

// How one column of a grid reads and writes a line: the text the cell shows, and what a text
// typed or written into the cell does to the line.
template <class Line> struct LineField {
    std::function<QString(const Line&)> show;
    std::function<void(Line&, const QString&)> take;
};

// A text member, shown and taken as it stands.
template <class Line> LineField<Line> field(QString Line::*member) {
    return {[member](const Line& l) { return l.*member; },
            [member](Line& l, const QString& text) { l.*member = text; }};
}

// A figure the clerk may leave blank: blank text is a blank figure, any other text its leading
// number; shown without trailing zeros, rounded to `digits`.
template <class Line> LineField<Line> field(Figure Line::*member, int digits = 6) {
    return {[member, digits](const Line& l) { return (l.*member).toText(digits); },
            [member](Line& l, const QString& text) { l.*member = Figure::fromText(text); }};
}

// The lines behind a grid, as the grid's model asks for them: cells by text. The model holds
// one of these; a screen binds its own line type (TypedRows) and works on real lines.
class LineRows {
public:
    virtual ~LineRows() = default;
    virtual int count() const = 0;
    virtual void appendEmpty() = 0;
    virtual void erase(int row) = 0;
    virtual void clear() = 0;
    virtual QString text(int row, int column) const = 0;
    virtual void setText(int row, int column, const QString& text) = 0;
};

// Lines as rows of text cells, for grids that have no line type of their own.
class TextRows final : public LineRows {
public:
    explicit TextRows(int columns) : m_columns(columns) {}
    int count() const override { return int(m_rows.size()); }
    void appendEmpty() override {
        QStringList row;
        for (int i = 0; i < m_columns; ++i)
            row.append(QString());
        m_rows.push_back(row);
    }
    void erase(int row) override { m_rows.erase(m_rows.begin() + row); }
    void clear() override { m_rows.clear(); }
    QString text(int row, int column) const override { return m_rows[size_t(row)].value(column); }
    void setText(int row, int column, const QString& text) override {
        m_rows[size_t(row)][column] = text;
    }

private:
    int m_columns;
    std::vector<QStringList> m_rows;
};

// Real lines of one type; each column reads and writes its field.
template <class Line> class TypedRows final : public LineRows {
public:
    explicit TypedRows(std::vector<LineField<Line>> fields) : m_fields(std::move(fields)) {}

    int count() const override { return int(m_lines.size()); }
    void appendEmpty() override { m_lines.push_back(Line{}); }
    void erase(int row) override { m_lines.erase(m_lines.begin() + row); }
    void clear() override { m_lines.clear(); }
    QString text(int row, int column) const override {
        return m_fields[size_t(column)].show(m_lines[size_t(row)]);
    }
    void setText(int row, int column, const QString& text) override {
        m_fields[size_t(column)].take(m_lines[size_t(row)], text);
    }

    std::vector<Line>& lines() { return m_lines; }

private:
    std::vector<LineField<Line>> m_fields;
    std::vector<Line> m_lines;
};

} // namespace gm
