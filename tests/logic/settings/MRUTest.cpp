#include "settings/MRU.h"

#include <map>
#include <stdexcept>
#include <vector>

#include "Settings.h"

namespace kestrel {
namespace {

using Names = std::vector<std::string>;

/// The list command of the File menu.
class ListCommand : public Command, public CommandItems {
 public:
  Names texts;
  Names keys;
  bool fails = false;

  std::int32_t Count() const override { return static_cast<std::int32_t>(texts.size()); }
  const CommandItem& Item(std::int32_t) const override { throw std::logic_error("not asked for"); }
  void Add(const std::string& text, const std::string& key) override {
    if (fails) throw RuntimeError(err::kInternal, "Chosen to fail.");
    texts.push_back(text);
    keys.push_back(key);
  }
  void Clear() override {
    texts.clear();
    keys.clear();
  }

  const std::string& Name() const override { return name_; }
  std::int32_t CommandType() const override { return kCommandList; }
  const std::string& Category() const override { return name_; }
  std::string Caption() const override { return {}; }
  void Caption(const std::string&) override {}
  std::string ShortCaption() const override { return {}; }
  std::string Description() const override { return {}; }
  void Description(const std::string&) override {}
  std::string ToolTip() const override { return {}; }
  void ToolTip(const std::string&) override {}
  const std::string& ImageName() const override { return name_; }
  bool Enabled() const override { return true; }
  void Enabled(bool) override {}
  bool Visible() const override { return true; }
  void Visible(bool) override {}
  bool Checked() const override { return false; }
  kestrel::HotKeys& HotKeys() override { throw std::logic_error("not asked for"); }
  CommandBar& Bar() override { throw std::logic_error("not asked for"); }
  CommandItems& Items() override { return *this; }
  const CommandItem& SelectedItem() const override { throw std::logic_error("not asked for"); }

 private:
  std::string name_ = "mnuFileMRU";
};

/// A smart menu whose item "mru" has the entry for an empty list as its third entry.
class SmartMenuStandIn : public SmartMenu {
 public:
  struct Entry : SmartSubItem {
    std::int32_t index = 0;
    std::string caption, tag, description;
    std::int32_t visibility = -1;
    std::int32_t Index() const override { return index; }
    void Tag(const std::string& value) override { tag = value; }
    void Description(const std::string& value) override { description = value; }
    void Visibility(std::int32_t value) override { visibility = value; }
  };
  std::map<std::string, Entry> entries;

  SmartMenuStandIn() { entries["norecentfiles"].index = 3; }
  SmartSubItem* SubItem(const std::string& item, const std::string& key) override {
    EXPECT_EQ(item, "mru");
    const auto found = entries.find(key);
    return found == entries.end() ? nullptr : &found->second;
  }
  SmartSubItem& AddSubItem(const std::string&, std::int32_t position, const std::string& key,
                           const std::string& caption) override {
    Entry& entry = entries[key];
    entry.index = position;
    entry.caption = caption;
    return entry;
  }
  void RemoveSubItem(const std::string&, const std::string& key) override { entries.erase(key); }
};

/// A window whose menu has the array mnuMRU with its entry for an empty list.
class WindowMenu : public MenuItems {
 public:
  struct Entry : MenuItem {
    std::string caption, tag;
    bool enabled = false, visible = false;
    void Caption(const std::string& value) override { caption = value; }
    void Tag(const std::string& value) override { tag = value; }
    void Enabled(bool value) override { enabled = value; }
    void Visible(bool value) override { visible = value; }
  };
  std::map<std::int32_t, Entry> entries;

  WindowMenu() { entries[0].caption = "(no recent files)"; }
  MenuItem& Item(const std::string& name, std::int32_t index) override {
    EXPECT_EQ(name, "mnuMRU");
    if (!entries.contains(index)) throw RuntimeError(340, "There is no such element.");
    return entries[index];
  }
  MenuItem& Load(const std::string&, std::int32_t index) override {
    if (entries.contains(index)) throw RuntimeError(360, "The element is loaded already.");
    return entries[index];
  }
  void Unload(const std::string& name, std::int32_t index) override {
    Item(name, index);
    entries.erase(index);
  }
};

class RecentFiles : public Settings {
 protected:
  RecentFiles() {
    mru_.RootKey = kKey;
    mru_.CommandMRU = &command_;
    for (char name = 'a'; name <= 'z'; ++name) platform_.forms.existing.insert(path(std::string(1, name)));
  }

  static std::string path(const std::string& name) { return "/pictures/" + name + ".png"; }
  void storeNames(const Names& names) {
    for (std::size_t i = 0; i < names.size(); ++i) {
      store_.WriteValue(HKEY_CURRENT_USER, kKey, "MRU" + std::to_string(i + 1), names[i], kStoreString);
    }
  }
  Names stored() {
    Names names;
    for (int i = 1; i <= 30; ++i) {
      names.push_back(store_.ReadValue(HKEY_CURRENT_USER, kKey, "MRU" + std::to_string(i)).ToString());
    }
    while (!names.empty() && names.back().empty()) names.pop_back();
    return names;
  }
  Names listed() const { return {mru_.Files.begin(), mru_.Files.end()}; }

  const std::string kKey = kRoot + "\\RecentFiles";
  MRU mru_;
  ListCommand command_;
};

TEST_F(RecentFiles, StartWithTheGivenDefaults) {
  const MRU mru;
  EXPECT_EQ(mru.MaxEntries, 10);
  EXPECT_EQ(mru.RootHive, HKEY_CURRENT_USER);
  EXPECT_EQ(mru.RootKey, "Software\\Brindlewick\\Brindle Image Pro\\RecentFiles");
  EXPECT_EQ(mru.RootValuePrefix, "MRU");
  EXPECT_EQ(mru.Files.Count(), 0);
  EXPECT_TRUE(mru.PurgeInvalidFiles);
  EXPECT_TRUE(mru.AddBandShortcuts);
  EXPECT_EQ(mru.Band, nullptr);
  EXPECT_EQ(mru.CommandMRU, nullptr);
  EXPECT_EQ(mru.SmartUI, nullptr);
}

TEST_F(RecentFiles, AreKeptUnderTheirHiveKeyPrefixAndLimit) {
  constexpr std::int32_t kOtherHive = 5;
  mru_.RootHive = kOtherHive;
  mru_.RootKey = "Other\\Key";
  mru_.RootValuePrefix = "File";
  mru_.MaxEntries = 2;
  for (const char* name : {"a", "b", "c"}) mru_.AddFile(path(name));
  EXPECT_EQ(stored(), Names{}) << "nothing under the usual address";
  EXPECT_EQ(store_.ReadValue(kOtherHive, "Other\\Key", "File1").ToString(), path("c"));
  EXPECT_EQ(store_.ReadValue(kOtherHive, "Other\\Key", "File3").ToString(), path("a"));
  mru_.LoadFromRegistry();
  EXPECT_EQ(listed(), (Names{path("c"), path("b")}));
}

TEST_F(RecentFiles, ReplaceTheListWhenTheyAreLoaded) {
  mru_.Files.Add("/in memory only.png", "/in memory only.png");
  storeNames({path("a")});
  mru_.LoadFromRegistry();
  EXPECT_EQ(listed(), Names{path("a")});
}

TEST_F(RecentFiles, WithoutANameAreNotInMenus) {
  mru_.CommandMRU = nullptr;
  mru_.Files.Add("");
  mru_.Files.Add(path("a"), path("a"));
  mru_.Files.Add("");
  mru_.Files.Add(path("b"), path("b"));
  WindowMenu window;
  mru_.BuildMRU(&window);
  ASSERT_EQ(window.entries.size(), 3u);
  EXPECT_EQ(window.entries[1].tag, path("a"));
  EXPECT_EQ(window.entries[2].tag, path("b"));
  EXPECT_EQ(window.entries[2].caption, "&2 compact:/pictures/b.png");
  SmartMenuStandIn menu;
  mru_.SmartUI = &menu;
  mru_.BuildMRU(nullptr);
  EXPECT_EQ(menu.entries.size(), 3u);
  EXPECT_EQ(menu.entries.at("File2").tag, path("b"));
  EXPECT_EQ(menu.entries.at("File2").index, 5) << "counted without gaps";
}

TEST_F(RecentFiles, PutTheNewestFirstAndStoreIt) {
  mru_.AddFile(path("a"));
  mru_.AddFile(path("b"));
  EXPECT_EQ(listed(), (Names{path("b"), path("a")}));
  EXPECT_EQ(stored(), listed());
  EXPECT_EQ(command_.texts, listed()) << "the full path, without numbers";
}

TEST_F(RecentFiles, MoveAKnownFileToTheFrontInAnyCase) {
  for (const char* name : {"a", "b", "c"}) mru_.AddFile(path(name));
  mru_.AddFile("/PICTURES/A.png");
  EXPECT_EQ(listed(), (Names{"/PICTURES/A.png", path("c"), path("b")}));
  EXPECT_EQ(stored(), listed());
}

TEST_F(RecentFiles, MoveAKnownFileToTheFrontInAnyCaseOfAllScripts) {
  mru_.AddFile("/bilder/Ärger über Ольга.png");
  mru_.AddFile(path("a"));
  mru_.AddFile("/bilder/ÄRGER ÜBER ОЛЬГА.png");
  EXPECT_EQ(listed(), (Names{"/bilder/ÄRGER ÜBER ОЛЬГА.png", path("a")}));
  mru_.RemoveFile("/BILDER/ärger über ольга.PNG");
  EXPECT_EQ(listed(), Names{path("a")});
}

TEST_F(RecentFiles, RewriteTheStoreForTheFirstNameToo) {
  mru_.AddFile(path("a"));
  mru_.AddFile(path("b"));
  store_.calls.clear();
  mru_.AddFile(path("b"));
  EXPECT_EQ(listed(), (Names{path("b"), path("a")}));
  EXPECT_EQ(store_.calls,
            "delete MRU1;delete MRU2;delete MRU3;delete MRU4;delete MRU5;delete MRU6;delete MRU7;delete MRU8;"
            "delete MRU9;delete MRU10;write MRU1=/pictures/b.png;write MRU2=/pictures/a.png;");
}

TEST_F(RecentFiles, MayExceedTheLimitUntilReloaded) {
  Names expected;
  for (char name = 'a'; name <= 'k'; ++name) {
    mru_.AddFile(path(std::string(1, name)));
    expected.insert(expected.begin(), path(std::string(1, name)));
  }
  ASSERT_EQ(expected.size(), 11u);
  EXPECT_EQ(listed(), expected);
  EXPECT_EQ(command_.texts, expected);
  EXPECT_EQ(stored(), expected) << "the eleventh is in MRU11";

  MRU next;
  next.RootKey = kKey;
  next.LoadFromRegistry();
  EXPECT_EQ(next.Files.Count(), 10);
  next.SaveToRegistry();
  EXPECT_EQ(stored().size(), 11u) << "values beyond the limit are not cleared";
}

TEST_F(RecentFiles, AreLoadedInOrder) {
  storeNames({path("c"), path("a"), path("b")});
  store_.calls.clear();
  mru_.LoadFromRegistry();
  EXPECT_EQ(listed(), (Names{path("c"), path("a"), path("b")}));
  EXPECT_EQ(store_.calls, "") << "nothing to save";
}

TEST_F(RecentFiles, AfterAnEmptyValueAreHidden) {
  storeNames({path("a"), "", path("c")});
  mru_.LoadFromRegistry();
  EXPECT_EQ(listed(), Names{path("a")});
}

TEST_F(RecentFiles, ThatAreDeletedLeaveTheStoreOnLoad) {
  storeNames({path("a"), "/gone.png", path("b"), "/gone too.png"});
  mru_.LoadFromRegistry();
  EXPECT_EQ(listed(), (Names{path("a"), path("b")}));
  EXPECT_EQ(stored(), listed());
}

TEST_F(RecentFiles, ThatAreDeletedStayWithoutPurging) {
  storeNames({path("a"), "/gone.png"});
  mru_.PurgeInvalidFiles = false;
  mru_.LoadFromRegistry();
  EXPECT_EQ(listed(), (Names{path("a"), "/gone.png"}));
}

TEST_F(RecentFiles, ThatAreStoredTwiceAreListedOnce) {
  platform_.forms.existing.insert("/PICTURES/a.png");
  storeNames({path("a"), "/PICTURES/a.png", path("b")});
  mru_.LoadFromRegistry();
  EXPECT_EQ(listed(), (Names{path("a"), path("b")}));
  mru_.PurgeInvalidFiles = false;
  mru_.LoadFromRegistry();
  EXPECT_EQ(listed(), (Names{path("a"), path("b")}));
  EXPECT_EQ(stored().size(), 3u) << "a duplicate alone is no reason to save";
}

TEST_F(RecentFiles, SurviveForeignContentOfTheirKey) {
  store_.WriteValue(HKEY_CURRENT_USER, kKey, "MRU1", path("a"), kStoreString);
  store_.WriteValue(HKEY_CURRENT_USER, kKey, "MRU2", 77, kStoreNumber);
  store_.WriteValue(HKEY_CURRENT_USER, kKey, "Color", "red", kStoreString);
  mru_.LoadFromRegistry();
  EXPECT_EQ(listed(), Names{path("a")});
  mru_.AddFile(path("b"));
  EXPECT_EQ(stored(), (Names{path("b"), path("a")}));
  EXPECT_EQ(store_.ReadValue(HKEY_CURRENT_USER, kKey, "Color").ToString(), "red");
  EXPECT_EQ(reports(), 0u);
}

TEST_F(RecentFiles, AreRemovedFromListAndStoreButNotFromTheDisplay) {
  mru_.AddFile(path("a"));
  mru_.AddFile(path("b"));
  mru_.RemoveFile("/pictures/A.PNG");
  EXPECT_EQ(listed(), Names{path("b")});
  EXPECT_EQ(stored(), listed());
  EXPECT_EQ(command_.texts, (Names{path("b"), path("a")}));
  mru_.RemoveFile("/unknown.png");
  EXPECT_EQ(listed(), Names{path("b")});
}

TEST_F(RecentFiles, StayInMemoryIfTheStoreCannotBeWritten) {
  store_.writesFail = true;
  mru_.AddFile(path("a"));
  EXPECT_EQ(listed(), Names{path("a")});
  EXPECT_EQ(command_.texts, listed()) << "the display follows all the same";
  ASSERT_EQ(reports(), 1u);
  EXPECT_NE(platform_.boxes.boxes[0].text.find("Module: MRU\r\nProcedure: SaveToRegistry\r\n"),
            std::string::npos);
}

TEST_F(RecentFiles, IgnoreAKeyThatCannotBeCreated) {
  store_.CreateKey(HKEY_CURRENT_USER, kKey);
  store_.createFails = true;
  mru_.SaveToRegistry();
  EXPECT_EQ(reports(), 0u);
}

TEST_F(RecentFiles, ReportAStoreThatCannotBeRead) {
  store_.readsFail = true;
  mru_.LoadFromRegistry();
  EXPECT_EQ(mru_.Files.Count(), 0);
  EXPECT_EQ(reports(), 1u);
}

TEST_F(RecentFiles, KeepTheStoreIfTheyCouldNotBeLoaded) {
  storeNames({path("a"), path("b")});
  store_.readsFail = true;
  mru_.LoadFromRegistry();
  EXPECT_EQ(listed(), Names{});
  mru_.AddFile(path("c"));
  mru_.RemoveFile(path("x"));
  EXPECT_EQ(listed(), Names{path("c")});
  store_.readsFail = false;
  EXPECT_EQ(stored(), (Names{path("a"), path("b")})) << "the store is unchanged";
  mru_.AddFile(path("d"));
  EXPECT_EQ(listed(), (Names{path("d"), path("c"), path("a"), path("b")}));
  EXPECT_EQ(stored(), listed());
  EXPECT_EQ(command_.texts, listed());
}

TEST_F(RecentFiles, AreRemovedFromAListThatCouldNotBeLoaded) {
  storeNames({path("a"), path("b")});
  store_.readsFail = true;
  mru_.LoadFromRegistry();
  store_.readsFail = false;
  mru_.RemoveFile(path("a"));
  EXPECT_EQ(stored(), Names{path("b")});
  EXPECT_EQ(listed(), Names{path("b")});
}

TEST_F(RecentFiles, KeepTheStoreIfOnlyTheFirstOnesCouldBeLoaded) {
  storeNames({path("a"), path("b"), path("c")});
  store_.readsLeft = 2;
  mru_.LoadFromRegistry();
  EXPECT_EQ(listed(), (Names{path("a"), path("b")}));
  store_.readsLeft = -1;
  mru_.AddFile(path("d"));
  EXPECT_EQ(stored(), (Names{path("d"), path("a"), path("b"), path("c")}));
}

TEST_F(RecentFiles, MayBeAddedByAReferenceIntoTheList) {
  for (const char* name : {"a", "b", "c"}) mru_.AddFile(path(name));
  mru_.AddFile(mru_.Files.Item(3));
  EXPECT_EQ(listed(), (Names{path("a"), path("c"), path("b")}));
  mru_.RemoveFile(mru_.Files.Item(1));
  EXPECT_EQ(listed(), (Names{path("c"), path("b")}));
}

TEST_F(RecentFiles, CreateTheirKeyEvenIfTheListIsEmpty) {
  mru_.RemoveFile(path("a"));
  EXPECT_TRUE(store_.hasKey(HKEY_CURRENT_USER, kKey));
  EXPECT_EQ(stored(), Names{});
}

TEST_F(RecentFiles, ReportADisplayThatFailsUnderBuildMRU) {
  mru_.Files.Add(path("a"), path("a"));
  command_.fails = true;
  SmartMenuStandIn menu;
  menu.entries.clear();  // the entry for an empty list too
  WindowMenu window;
  window.entries.clear();
  mru_.BuildMRU(nullptr);
  mru_.CommandMRU = nullptr;
  mru_.SmartUI = &menu;
  mru_.BuildMRU(nullptr);
  mru_.SmartUI = nullptr;
  mru_.BuildMRU(&window);
  ASSERT_EQ(reports(), 3u);
  for (const auto& box : platform_.boxes.boxes) {
    EXPECT_NE(box.text.find("Module: MRU\r\nProcedure: BuildMRU\r\n"), std::string::npos) << box.text;
  }
}

TEST_F(RecentFiles, ReloadWhenABandIsSet) {
  Collection<int> band;
  mru_.Band = &band;
  mru_.AddFile(path("a"));
  platform_.forms.existing.erase(path("a"));
  mru_.AddFile(path("b"));
  EXPECT_EQ(listed(), Names{path("b")}) << "the load drops the deleted file";
  EXPECT_EQ(command_.texts, Names{path("b")}) << "the list is shown after the load";

  mru_.AddFile(path("c"));
  mru_.AddFile(path("d"));
  platform_.forms.existing.erase(path("c"));
  mru_.RemoveFile(path("d"));
  EXPECT_EQ(listed(), Names{path("b")}) << "the load drops the other file, which was deleted";
  EXPECT_EQ(stored(), Names{path("b")});
}

TEST_F(RecentFiles, AreShownInTheListCommandFirst) {
  SmartMenuStandIn menu;
  WindowMenu window;
  mru_.SmartUI = &menu;
  mru_.AddFile(path("a"));
  mru_.BuildMRU(&window);
  EXPECT_EQ(command_.texts, Names{path("a")});
  EXPECT_EQ(menu.entries.size(), 1u);
  EXPECT_EQ(window.entries.size(), 1u);
}

TEST_F(RecentFiles, AreShownInASmartMenu) {
  SmartMenuStandIn menu;
  menu.entries["File1"].caption = "old";
  menu.entries["File2"].caption = "old";
  menu.entries["File4"].caption = "behind a gap";
  mru_.CommandMRU = nullptr;
  mru_.SmartUI = &menu;
  mru_.AddFile(path("b"));
  mru_.AddFile(path("a"));
  EXPECT_EQ(platform_.files.compacted.back(), "/pictures/b.png|50|\\");
  EXPECT_EQ(menu.entries.at("File1").caption, "&1 compact:/pictures/a.png");
  EXPECT_EQ(menu.entries.at("File1").index, 4);
  EXPECT_EQ(menu.entries.at("File1").tag, path("a"));
  EXPECT_EQ(menu.entries.at("File1").description, path("a"));
  EXPECT_EQ(menu.entries.at("File2").caption, "&2 compact:/pictures/b.png");
  EXPECT_EQ(menu.entries.at("File2").index, 5);
  EXPECT_EQ(menu.entries.at("File4").caption, "behind a gap");
  EXPECT_EQ(menu.entries.at("norecentfiles").visibility, 0);
  mru_.Files.Clear();
  mru_.BuildMRU(nullptr);
  EXPECT_FALSE(menu.entries.contains("File1"));
  EXPECT_EQ(menu.entries.at("norecentfiles").visibility, 1);
}

TEST_F(RecentFiles, AreShownInAWindowsMenu) {
  WindowMenu window;
  mru_.CommandMRU = nullptr;
  mru_.AddFile(path("b"));
  mru_.AddFile(path("a"));
  mru_.BuildMRU(&window);
  ASSERT_EQ(window.entries.size(), 3u);
  EXPECT_EQ(window.entries[1].caption, "&1 compact:/pictures/a.png");
  EXPECT_EQ(window.entries[1].tag, path("a"));
  EXPECT_TRUE(window.entries[1].enabled);
  EXPECT_TRUE(window.entries[1].visible);
  EXPECT_EQ(window.entries[2].caption, "&2 compact:/pictures/b.png");
  EXPECT_FALSE(window.entries[0].visible);
  EXPECT_FALSE(window.entries[0].enabled);

  mru_.Files.Clear();
  mru_.BuildMRU(&window);
  ASSERT_EQ(window.entries.size(), 1u);
  EXPECT_TRUE(window.entries[0].visible);
  EXPECT_TRUE(window.entries[0].enabled);
  EXPECT_EQ(reports(), 0u);
}

TEST_F(RecentFiles, AreShownNowhereWithoutADisplay) {
  mru_.CommandMRU = nullptr;
  mru_.AddFile(path("a"));
  mru_.BuildMRU(nullptr);
  EXPECT_EQ(reports(), 0u);
}

}  // namespace
}  // namespace kestrel
