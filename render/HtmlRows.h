// A list with one item for each row of a table, such as the lines of its plot.
//
// The first page of items is there; the others stand in a <noscript> element, from which the page's
// script takes those that belong to the rows on show, so that a report of thousands of groups opens
// quickly.
#pragma once

#include <functional>
#include <ostream>
#include <string>
#include <string_view>

#include "render/ReaderTable.h"

namespace render {

// `item` gives the content of a row's item as HTML without line breaks; empty where the row has
// nothing to say. Split groups have headings in the list.
void writeHtmlRows(const ReaderTable& table, std::string_view cssClass,
                   const std::function<std::string(std::size_t row)>& item, std::ostream& out);

}  // namespace render
