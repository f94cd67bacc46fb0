#pragma once

#include <QComboBox>

// A combo box that measures its item texts before opening the popup; otherwise a plain
// QComboBox.
class ArmSafeComboBox : public QComboBox
{
public:
    using QComboBox::QComboBox;

    void showPopup() override;
};
