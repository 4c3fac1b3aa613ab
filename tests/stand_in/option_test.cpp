#include <gtest/gtest.h>

#include "tests/stand_in/plain_renderer.h"

namespace {

/// A counted record that notes its end.
class Mortal : public KT_Counted {
 public:
  explicit Mortal(bool& gone) : gone_(gone) {}
  ~Mortal() override { gone_ = true; }
  KT_Counted* clone() const override { return nullptr; }

 private:
  bool& gone_;
};

TEST(Option_Value, CopiesHaveTheirOwnStorage) {
  KT_Option_Value value(1, 2, 3);
  const KT_Option_Value reader = value;
  static_cast<std::int32_t*>(value.writable().data)[1] = 20;
  EXPECT_EQ(reader->as_ints()[1], 2);
  EXPECT_EQ(value->as_ints()[0], 1);
  EXPECT_EQ(value->as_ints()[1], 20);
  EXPECT_EQ(value->as_ints()[2], 3);
}

TEST(Option_Value, KeepsCountedObjectsAlive) {
  bool gone = false;
  {
    KT_Option_Value copy(false);
    {
      KT_Option_Value value(static_cast<const KT_Counted*>(new Mortal(gone)));
      copy = value;
      copy.writable();
    }
    EXPECT_FALSE(gone);
  }
  EXPECT_TRUE(gone);
}

TEST(Option_Table, FindsByNameAndReplacesWithoutLosingPointers) {
  KT_Option_Table table;
  KT_Option* const first = table.add(KT_Option(L"Margin", KT_Option_Enum::local, 3));
  table.add(KT_Option(L"Use Mask", KT_Option_Enum::local, true));
  EXPECT_EQ(table.find(L"Margin"), first);
  EXPECT_EQ(table.find(L"margin"), nullptr);

  KT_Option* const second = table.add(KT_Option(L"Margin", KT_Option_Enum::local, 4));
  EXPECT_EQ(table.find(L"Margin"), second);
  EXPECT_EQ(second->value->as_int(), 4);
  EXPECT_EQ(first->value->as_int(), 3);
}

TEST(Option_Table, CarriesOnlyWhatChanged) {
  KT_Option_Table from, to;
  KT_Option* const changed = from.add(KT_Option(L"Changed", KT_Option_Enum::local, 0));
  from.add(KT_Option(L"Kept", KT_Option_Enum::local, 0));
  to.add(KT_Option(L"Changed", KT_Option_Enum::local, 1));
  to.add(KT_Option(L"Kept", KT_Option_Enum::local, 1));

  changed->set(KT_Option_Value(7));
  from.carry_changes_to(to);
  EXPECT_EQ(to.find(L"Changed")->value->as_int(), 7);
  EXPECT_EQ(to.find(L"Kept")->value->as_int(), 1);

  // What has been carried is not carried again.
  to.find(L"Changed")->set(KT_Option_Value(8));
  from.carry_changes_to(to);
  EXPECT_EQ(to.find(L"Changed")->value->as_int(), 8);
}

TEST(Option_Table, RenderersShareOptionsOfSharedScope) {
  KT_Handle<Plain_Renderer> first(new Plain_Renderer(nullptr));
  first->renderer_option_table.add(KT_Option(L"Mask Cache", KT_Option_Enum::shared, nullptr));
  first->current_option_table.add(KT_Option(L"Mask Cache", KT_Option_Enum::shared, nullptr));
  first->current_option_table.add(KT_Option(L"Margin", KT_Option_Enum::local, 5));

  const KT_Handle<Plain_Renderer> second(new Plain_Renderer(first.get()));
  EXPECT_EQ(second->current_option_table.find(L"Margin"), nullptr);
  EXPECT_EQ(second->current_option_table.find(L"Mask Cache"),
            first->current_option_table.find(L"Mask Cache"));

  int object = 0;
  first->renderer_option_table.find(L"Mask Cache")->set(KT_Option_Value(&object));
  first->update_current_options();
  first.release();  // what is shared outlives its first table
  EXPECT_EQ(second->option_table().find(L"Mask Cache")->value->pointer(), &object);
}

}  // namespace
