#include "core/qvutils/diag/qvlogevent.h"

#include "core/qvutils/diag/diagnostics.h"

QvLogEvent::QvLogEvent(LOG_LEVEL level_, const I18NString& category_, const I18NString& product_, const I18NString& module_,
                       const I18NString& className_, const I18NString& method_, LOG_ACTION action_, const I18NString& message_,
                       const I18NString& detail_)
    : level(level_),
      category(category_),
      product(product_),
      module(module_),
      className(className_),
      method(method_),
      action(action_),
      message(message_),
      detail(detail_) {}

void QvLogEvent::Log() const {
    const SMSourceFrame* const frame = SMSourceFrame::Innermost();
    if (!frame) {
        CurrentLogSink().Take(*this, nullptr);
        return;
    }
    const SMSourceContext context = frame->Describe();
    CurrentLogSink().Take(*this, &context);
}
