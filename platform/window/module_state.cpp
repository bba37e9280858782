// placeholder translation unit until the framework's sources stand beside it
