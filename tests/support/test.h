#pragma once

// What most tests use: GoogleTest, files and directories, captured output, and the environment.

#include "support/capture.h"
#include "support/environmentguard.h"
#include "support/files.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <memory>
#include <vector>
