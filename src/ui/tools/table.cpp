// Table: the toolkit's model over two functions.
#include "ui/tools/table.h"

#include "ui/text.h"

namespace tellaxis::ui {

namespace {

class Rows : public wxDataViewVirtualListModel {
 public:
  Rows(Table::Text text, Table::Colour colour) : text_(std::move(text)), colour_(std::move(colour)) {}

  void GetValueByRow(wxVariant& value, unsigned row, unsigned column) const override { value = text_(row, column); }

  bool GetAttrByRow(unsigned row, unsigned /*column*/, wxDataViewItemAttr& look) const override {
    const auto colour = colour_(row);
    if (colour) look.SetColour(*colour);
    return colour.has_value();
  }

  bool SetValueByRow(const wxVariant& /*value*/, unsigned /*row*/, unsigned /*column*/) override { return false; }

 private:
  Table::Text text_;
  Table::Colour colour_;
};

}  // namespace

Table::Table(wxWindow* parent, std::span<const TableColumn> columns, Text text, Colour colour)
    : wxDataViewCtrl(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxDV_SINGLE | wxDV_ROW_LINES),
      rows_(new Rows(std::move(text), std::move(colour))) {
  AssociateModel(rows_.get());
  const int letter = GetTextExtent("0").x;
  unsigned index = 0;
  for (const TableColumn& column : columns)
    AppendTextColumn(fromUtf8(column.title), index++, wxDATAVIEW_CELL_INERT, column.characters * letter);
}

void Table::reload(std::size_t rows) {
  UnselectAll();
  rows_->Reset(static_cast<unsigned>(rows));
}

std::optional<std::size_t> Table::chosen() const {
  const wxDataViewItem item = GetSelection();
  if (!item.IsOk()) return std::nullopt;
  return rows_->GetRow(item);
}

void Table::choose(std::size_t row) {
  const wxDataViewItem item = rows_->GetItem(static_cast<unsigned>(row));
  SetCurrentItem(item);
  Select(item);
  EnsureVisible(item);
}

}  // namespace tellaxis::ui
