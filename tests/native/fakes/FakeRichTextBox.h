// A stand-in for the rich-text box. It understands a tiny RTF dialect: "{\rtf1 " then text in
// which control words such as "\b " or "\b0 " are formatting, then "}". Writing plain text
// flattens the document to "{\rtf1 " + text + "}", as a real box drops varied formatting.
#pragma once

#include "platform/RichTextBox.h"

namespace mq::test {

class FakeRichTextBox : public RichTextBox {
 public:
  bool LoadRtf(std::string_view rtf) override {
    ++loads;
    if (rtf.substr(0, 6) != "{\\rtf1" || rtf.empty() || rtf.back() != '}') return false;
    document_ = Bytes(rtf);
    return true;
  }
  Text PlainText() override {
    std::string_view body(document_);
    if (body.size() < 7) return Text();
    body = body.substr(7, body.size() - 8);  // between "{\rtf1 " and "}"
    Text out;
    for (size_t i = 0; i < body.size(); ++i) {
      if (body[i] == '\\') {
        while (i + 1 < body.size() && body[i + 1] != ' ') ++i;
        ++i;  // the space that ends the control word
        continue;
      }
      out.push_back(static_cast<unsigned char>(body[i]));
    }
    return out;
  }
  void SetPlainText(TextView text) override {
    document_ = "{\\rtf1 " + Narrow(text) + "}";
  }
  Bytes Rtf() override { return document_; }
  void Clear() override { document_.clear(); }

  int loads = 0;

 private:
  Bytes document_;
};

}  // namespace mq::test
