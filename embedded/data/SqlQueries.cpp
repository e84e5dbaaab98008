// SQL for servers. What a dialect spells differently comes from SqlDialect and SqlServer::column.
#include "SqlQueries.h"

#include <algorithm>
#include <cctype>

namespace embedded::data {
namespace {

// Some engines take an alias for a column of that name, so none may be one.
std::string unusedPrefix(const std::vector<Column>& columns) {
  std::string prefix = "v_";
  const auto begins = [&](const Column& column) {
    return column.name.size() >= prefix.size() &&
           std::equal(prefix.begin(), prefix.end(), column.name.begin(), [](char a, char b) {
             return a == static_cast<char>(std::tolower(static_cast<unsigned char>(b)));
           });
  };
  while (std::ranges::any_of(columns, begins)) prefix += '_';
  return prefix;
}

std::string joined(const std::vector<std::string>& list) {
  std::string text;
  for (const std::string& item : list) text += (text.empty() ? "" : ", ") + item;
  return text;
}

bool isWeight(const ScanRequest& request, std::size_t index) {
  return static_cast<int>(index) == request.weight;
}

}  // namespace

SqlQueries::SqlQueries(const SqlServer& server)
    : server_(server), dialect_(server.dialect()), prefix_(unusedPrefix(server.columns())) {}

SqlColumn SqlQueries::column(const ColumnRead& read) const {
  const Column& column = server_.columns()[static_cast<std::size_t>(read.column)];
  return server_.column(column, isText(read.as));
}

bool SqlQueries::isNumber(const ColumnRead& read) const {
  return !isText(read.as) && !column(read).number.empty();
}

void SqlQueries::add(SqlQuery& query, const std::string& expression, std::string_view type) const {
  query.text += (query.text.empty() ? "SELECT " : ", ") + expression;
  query.types.emplace_back(type);
}

void SqlQueries::addValue(SqlQuery& query, const ScanRequest& request, std::size_t index) const {
  const SqlColumn asked = column(request.columns[index]);
  add(query, asked.value + " AS " + alias(index), asked.type);
}

// The expressions by which rows are ordered, as " ORDER BY ..."; all are added to `list`.
std::string SqlQueries::keys(const ScanRequest& request, std::span<const TextOrder> orders,
                             std::vector<std::string>& list) const {
  std::string text;
  for (std::size_t i = 0; i < request.orderBy; ++i) {
    std::string key = column(request.columns[i]).key;
    const auto order = std::ranges::find(orders, i, &TextOrder::column);
    if (order != orders.end() && order->texts.empty()) continue;
    if (order != orders.end())
      key = "coalesce(" + dialect_.placeOf(key, order->texts, order->places) + ", 0)";
    list.push_back(key);
    text += (text.empty() ? " ORDER BY " : ", ") + key + " NULLS FIRST";
  }
  return text;
}

// 1 for a case whose weight counts, else 0.
std::string SqlQueries::counted(const ColumnRead& read) const {
  const std::string number = column(read).number;
  return "(CASE WHEN " + filled(dialect_.isFinite, number) + " AND " + number +
         " >= 0.5 THEN 1 ELSE 0 END)";
}

void SqlQueries::addWeight(SqlQuery& query, const ColumnRead& read) const {
  const std::string number = column(read).number;
  const auto real = [&](const std::string& expression) {
    return filled(dialect_.real, "coalesce(" + expression + ", 0)");
  };
  add(query,
      real("sum(CASE WHEN " + filled(dialect_.isFinite, number) + " AND " + number +
           " >= 0.5 THEN floor(" + number + " + 0.5) ELSE 0 END)"),
      dialect_.typeOfReal);
  add(query, "count(*)", dialect_.typeOfCount);
  add(query,
      real("sum(CASE WHEN " + number + " IS NULL THEN 0 WHEN " + filled(dialect_.isFinite, number) +
           " THEN 0 ELSE 1 END)"),
      dialect_.typeOfReal);
  add(query, real("min(" + number + ")"), dialect_.typeOfReal);
  add(query, real("max(" + number + ")"), dialect_.typeOfReal);
}

SqlQuery SqlQueries::rows(const ScanRequest& request, std::span<const TextOrder> orders) const {
  SqlQuery query;
  query.whole = false;
  query.marked = !dialect_.mark.empty();
  if (query.marked) query.text = "SELECT " + std::string(dialect_.mark);
  for (std::size_t i = 0; i < request.columns.size(); ++i) addValue(query, request, i);
  if (request.columns.empty()) add(query, filled(dialect_.real, "1"), dialect_.typeOfReal);
  std::vector<std::string> list;
  std::string order = keys(request, orders, list);
  if (!order.empty())
    for (std::size_t i = 0; i < request.columns.size(); ++i) order += ", " + alias(i);
  query.text += " FROM " + server_.table() + order;
  return query;
}

SqlQuery SqlQueries::patterns(const ScanRequest& request, std::span<const TextOrder> orders) const {
  SqlQuery query;
  std::vector<std::string> groups;
  const bool weighted = request.weight >= 0;
  const bool computes =
      weighted && isNumber(request.columns[static_cast<std::size_t>(request.weight)]);
  for (std::size_t i = 0; i < request.columns.size(); ++i) {
    if (isWeight(request, i) && computes) continue;
    addValue(query, request, i);
    groups.push_back(alias(i));
  }
  if (computes) {
    const ColumnRead& read = request.columns[static_cast<std::size_t>(request.weight)];
    addWeight(query, read);
    groups.push_back(counted(read));
  } else {
    add(query, "count(*)", dialect_.typeOfCount);
  }
  const std::string order = keys(request, orders, groups);
  query.text += " FROM " + server_.table();
  if (!groups.empty()) query.text += " GROUP BY " + joined(groups);
  query.text += order;
  return query;
}

SqlQuery SqlQueries::sample(const ScanRequest& request, std::uint64_t sample) const {
  SqlQuery inner;
  std::vector<std::string> groups;
  for (std::size_t i = 0; i < request.columns.size(); ++i) {
    const bool computes = isWeight(request, i) && isNumber(request.columns[i]);
    if (computes)
      add(inner, counted(request.columns[i]) + " AS " + alias(i), "");
    else
      addValue(inner, request, i);
    groups.push_back(alias(i));
  }
  if (inner.text.empty()) add(inner, "1 AS " + alias(0), "");
  if (groups.empty()) groups.push_back(alias(0));
  SqlQuery query;
  add(query, filled(dialect_.real, "coalesce(sum(n), 0)"), dialect_.typeOfReal);
  add(query, "count(*)", dialect_.typeOfCount);
  query.text += " FROM (SELECT count(*) AS n FROM (" + inner.text + " FROM " + server_.table() +
                " LIMIT " + std::to_string(sample) + ") AS some_rows GROUP BY " + joined(groups) +
                ") AS their_patterns";
  return query;
}

SqlQuery SqlQueries::rowCount() const {
  SqlQuery query;
  add(query, "count(*)", dialect_.typeOfCount);
  query.text += " FROM " + server_.table();
  return query;
}

SqlQuery SqlQueries::longest(std::span<const ColumnRead> columns) const {
  SqlQuery query;
  for (const ColumnRead& read : columns)
    add(query,
        filled(dialect_.real,
               "coalesce(max(" + filled(dialect_.bytes, column(read).value) + "), 0)"),
        dialect_.typeOfReal);
  query.text += " FROM " + server_.table();
  return query;
}

SqlQuery SqlQueries::texts(const ColumnRead& read, std::size_t most) const {
  SqlQuery query;
  const SqlColumn asked = column(read);
  add(query, asked.value + " AS " + alias(0), asked.type);
  query.text +=
      " FROM " + server_.table() + " GROUP BY " + alias(0) + " LIMIT " + std::to_string(most);
  return query;
}

SqlQuery SqlQueries::large(const ColumnRead& read) const {
  SqlQuery query;
  const SqlColumn asked = column(read);
  add(query, asked.value + " AS " + alias(0), asked.type);
  query.text += " FROM " + server_.table() + " WHERE " + asked.number +
                " <= -9007199254740992 OR " + asked.number + " >= 9007199254740992";
  return query;
}

}  // namespace embedded::data
