#include <gtest/gtest.h>

#include <string>

#include "Support.h"
#include "VnZEL10cmn/errors/clsVnError.h"
#include "VnZEL10cmn/errors/clsVnLogFile.h"
#include "VnZEL10cmn/errors/clsVnLogItem.h"
#include "tests/support/TempFile.h"

namespace {

using VnZEL10cmn::clsVnError;
using VnZEL10cmn::clsVnLogFile;
using VnZEL10cmn::clsVnLogItem;

/// An error whose texts are all longer than those that strings keep within themselves.
class FiledError : public testing::Test {
 protected:
  FiledError() {
    error_.SetError(1, Text("message"), true, Text("function"), Text("source"), Text("instance"));
  }

  static std::string Text(const std::string& name) { return "a text that is the " + name + " of the error"; }

  void ExpectTexts(const std::string& message, const std::string& function, const std::string& source,
                   const std::string& instance) const {
    EXPECT_EQ(error_.ErrorMsg(), message);
    EXPECT_EQ(error_.ErrorFunction(), function);
    EXPECT_EQ(error_.ErrorSource(), source);
    EXPECT_EQ(error_.ErrorInstanceID(), instance);
  }

  clsVnError error_;
};

TEST_F(FiledError, FilesItsMessageAsFunction) {
  NEEDS_ERROR_TEXTS_AS_VALUES();
  EXPECT_TRUE(error_.SetError(2, "new", false, error_.ErrorMsg()));
  ExpectTexts("new", Text("message"), Text("source"), Text("instance"));
}

TEST_F(FiledError, FilesItsTextsInOtherPlaces) {
  NEEDS_ERROR_TEXTS_AS_VALUES();
  EXPECT_TRUE(error_.SetError(2, error_.ErrorInstanceID(), false, error_.ErrorMsg(), error_.ErrorFunction(),
                              error_.ErrorSource()));
  ExpectTexts(Text("instance"), Text("message"), Text("function"), Text("source"));
}

TEST_F(FiledError, FilesItsTextsInTheirPlaces) {
  EXPECT_TRUE(error_.SetError(1, error_.ErrorMsg(), true, error_.ErrorFunction(), error_.ErrorSource(),
                              error_.ErrorInstanceID()));
  ExpectTexts(Text("message"), Text("function"), Text("source"), Text("instance"));
}

TEST_F(FiledError, TakesItsTextsAsProperties) {
  error_.ErrorMsg(error_.ErrorMsg());
  error_.ErrorFunction(error_.ErrorSource());
  error_.ErrorSource(error_.ErrorInstanceID());
  error_.ErrorInstanceID(error_.ErrorMsg());
  ExpectTexts(Text("message"), Text("source"), Text("instance"), Text("message"));
}

TEST_F(FiledError, ATextStaysWhenTheErrorIsCleared) {
  NEEDS_ERROR_TEXTS_AS_VALUES();
  const auto& message = error_.ErrorMsg();
  const auto& source = error_.ErrorSource();
  error_.Clear();
  EXPECT_EQ(message, Text("message"));
  EXPECT_EQ(source, Text("source"));
}

TEST(Message, TakesItsTextsInOtherPlaces) {
  NEEDS_ERROR_TEXTS_AS_VALUES();
  const std::string text = "a text that is longer than a string keeps";
  clsVnLogItem item;
  item.SetMessage(text, "Function", text + " as source", text + " as instance");
  EXPECT_TRUE(item.SetMessage(item.InstanceID(), item.Message(), item.Message(), item.Source()));
  EXPECT_EQ(item.Message(), text + " as instance");
  EXPECT_EQ(item.Source(), text);
  EXPECT_EQ(item.InstanceID(), text + " as source");
  EXPECT_NE(item.GetLogEntry().find("Funktion ...........: " + text + "\r\n"), std::string::npos);
}

TEST(Message, TakesItsTextsAsProperties) {
  clsVnLogItem item;
  item.SetMessage("a text that is longer than a string keeps", "", "source", "instance");
  item.Message(item.Message());
  item.Source(item.Message());
  item.InstanceID(item.Source());
  EXPECT_EQ(item.Message(), "a text that is longer than a string keeps");
  EXPECT_EQ(item.Source(), "a text that is longer than a string keeps");
  EXPECT_EQ(item.InstanceID(), "a text that is longer than a string keeps");
}

TEST(LogFile, OpensTheFileThatItNames) {
  const test::TempDir folder;
  const std::string name = folder.File("a name that is longer than a string keeps.log");
  clsVnLogFile log;
  ASSERT_TRUE(log.FileOpen(name));
  EXPECT_FALSE(log.FileOpen(log.FileName()));
  ASSERT_TRUE(log.FileClose());
  EXPECT_TRUE(log.FileOpen(log.FileName()));
  EXPECT_EQ(log.FileName(), name);
  log.FileClose();
  EXPECT_TRUE(log.FileOpen(log.FileName(), true));
  EXPECT_EQ(log.FileName(), name);
}

}  // namespace
