// Starts the image library for this test program, as a program without windows does: without a display.
#include "image/ImageDecoder.h"

#include <gtest/gtest.h>
#include <wx/init.h>

#include <cstdlib>

namespace {

class ImageLibrary : public testing::Environment {
public:
    void SetUp() override
    {
        ::unsetenv("DISPLAY");
        ::unsetenv("WAYLAND_DISPLAY");
        ASSERT_TRUE(wxInitialize());
        RegisterImageHandlers();
    }

    void TearDown() override { wxUninitialize(); }
};

[[maybe_unused]] const auto* const pLibrary = testing::AddGlobalTestEnvironment(new ImageLibrary);

} // namespace
