// The three fields of the e-mail alerts, each beside its label and over its example.
#pragma once

#include "qt/bind.h"
#include "settings/smtp_fields.h"
#include "widgets/label.h"

class QGridLayout;

namespace zendrix::qt {

struct SmtpLabels {
  widgets::Label& address;
  widgets::Label& server;
  widgets::Label& port;
  widgets::Label& address_example;
  widgets::Label& server_example;
};

// From this row of a grid on, in its first two columns.
void AddSmtpFields(QGridLayout* grid, int row, settings::SmtpFields& fields, const SmtpLabels& labels,
                   const Toolkit& kit);

}  // namespace zendrix::qt
