#include "draws/draw_store.h"

namespace marlevo {

std::vector<Draw> DrawStore::Draws() {
  std::vector<Draw> draws;
  for (Recordset rows = connection_.Open(kSelectDraws); !rows.AtEnd(); rows.MoveNext()) {
    draws.push_back({rows.Text("VOU_NO"), {rows.Text("NO1"), rows.Text("NO2"), rows.Text("NO3"), rows.Text("NO4")}});
  }
  return draws;
}

bool DrawStore::Has(std::string_view number) {
  return !connection_.Open(SelectDraw(number)).AtEnd();
}

bool DrawStore::Add(const Draw& draw) {
  if (Has(draw.number)) {
    return false;
  }
  connection_.FlushAfter([&] { connection_.Execute(InsertDraw(draw)); });
  return true;
}

RowChange DrawStore::Replace(const Draw& draw) {
  return connection_.Replace(SelectDraw(draw.number), DeleteDraw(draw.number), [&draw] { return InsertDraw(draw); });
}

bool DrawStore::Remove(std::string_view number) {
  if (!Has(number)) {
    return false;
  }
  connection_.FlushAfter([&] { connection_.Execute(DeleteDraw(number)); });
  return true;
}

}  // namespace marlevo
