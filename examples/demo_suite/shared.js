function nameOf(customer) {
    return customer.name;
}
