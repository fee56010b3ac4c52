// Ownership: handles share one object, changes copy, heap handles belong to
// the caller, and pools release what members autoreleased.
#include <Rovani/Rovani.h>

#include <cstdio>
#include <memory>

static int Check(bool ok, const char* what) {
  std::printf("%-50s %s\n", what, ok ? "yes" : "NO");
  return ok ? 0 : 1;
}

int main() {
  RVAutoreleasePool pool;
  int failures = 0;

  //! [share]
  RVString original("shared text");
  unsigned int before = original.RetainCount();
  {
    RVString copy = original;  // the same object, one more reference
    failures += Check(copy.Ref() == original.Ref(), "a copy holds the same object");
    failures += Check(original.RetainCount() == before + 1, "the copy holds a reference");
  }  // the copy's reference goes with it
  failures += Check(original.RetainCount() == before, "leaving the scope released it");
  //! [share]

  //! [copy-on-write]
  RVDictionary first;
  first.SetObjectForKey(RVString("blue"), "colour");
  RVDictionary second = first;  // shares first's dictionary
  second.SetObjectForKey(RVString("red"), "colour");  // second now holds a new one
  failures += Check(first.StringForKey("colour") == "blue", "the first handle did not change");
  failures += Check(second.StringForKey("colour") == "red", "the second handle did");
  failures += Check(first.Ref() != second.Ref(), "they hold different objects now");
  //! [copy-on-write]

  //! [heap]
  RVArray values;
  values.AddObject(RVString("text"));
  values.AddObject(RVNumber(42));
  for (unsigned int i = 0; i < values.Count(); ++i) {
    std::unique_ptr<RVObject> value(values.ObjectAtIndex(i));  // the caller deletes it
    if (value->IsTypeOfClass(RVNumber::ClassType())) {
      failures += Check(static_cast<int>(RVNumber(value->Ref())) == 42, "the number is 42");
    }
  }
  //! [heap]

  //! [loop-pool]
  for (int batch = 0; batch < 100; ++batch) {
    RVAutoreleasePool perBatch;  // drains this batch's temporaries
    RVString line = RVString::StringWithFormat("line %d", batch);
    if (line.Length() == 0) ++failures;
  }
  //! [loop-pool]

  return failures == 0 ? 0 : 1;
}
