#include "resources/Resources.h"

#include <QDir>

// Outside of any namespace, as the macro demands.
static void initializeImages() {
    Q_INIT_RESOURCE(images);
}

void resources::initialize() {
    initializeImages();
}
