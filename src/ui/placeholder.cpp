// placeholder until the forms arrive
