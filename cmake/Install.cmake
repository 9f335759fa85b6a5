# Filled when there is something to install.
